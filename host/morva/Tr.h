#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

namespace tr {

// A translatable message of the host. The stand-in keeps the text as given;
// the host's own library translates it.
class Tr {
    Q_GADGET
    Q_PROPERTY(QString text READ text)

public:
    Tr();
    Tr(const QString& text); // implicit on purpose, as the host's: Tr t = QStringLiteral("...")
    virtual ~Tr();

    Tr(const Tr&) = default;
    Tr(Tr&&) = default;
    Tr& operator=(const Tr&) = default;
    Tr& operator=(Tr&&) = default;

    QString text() const;

    friend bool operator==(const Tr& a, const Tr& b) { return a.text_ == b.text_; }
    friend bool operator!=(const Tr& a, const Tr& b) { return !(a == b); }

private:
    QString text_;
};

// The host's shared "undefined" word; its storage is defined by the library
// that uses the vocabulary (libVeskIface).
extern const QString undefined;

} // namespace tr
