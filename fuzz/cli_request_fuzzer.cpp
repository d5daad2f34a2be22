// The request that `vesk call` reads from its argument or standard input.

#include <cli/Operations.h>
#include <cli/RequestInput.h>
#include <requestcheck/RequestCheck.h>

#include <QTextStream>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    QString none;
    QTextStream empty(&none);
    QString error;
    // "@FILE" and "-" name sources other than the text itself: not from here.
    if (!text.startsWith(QLatin1Char('@')) && text != QLatin1String("-"))
        vesk::cli::readRequest(text, empty, &error);

    QString input = text;
    QTextStream in(&input);
    const auto fromStdin = vesk::cli::readRequest(QStringLiteral("-"), in, &error);
    if (!fromStdin && error.isEmpty())
        __builtin_trap(); // a refusal says why
    if (fromStdin && size > 0) {
        // What `call` reports of it, for the request record of one operation.
        const auto& operations = vesk::cli::operations();
        const vesk::cli::Operation& operation = operations[data[0] % operations.size()];
        for (const vesk::check::RequestProblem& problem :
             vesk::check::checkRequest(*fromStdin, *operation.request))
            if (!problem.path.startsWith(QLatin1Char('$')) || problem.problem.isEmpty())
                __builtin_trap();
    }
    return 0;
}
