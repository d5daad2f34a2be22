#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>

namespace tr {

/// A translatable message of the host. The stand-in keeps the text as given;
/// the host's own library translates it. A value.
class Tr {
    Q_GADGET
    Q_PROPERTY(QString text READ text)

public:
    /// An empty message.
    Tr();
    /// The message `text`; implicit on purpose, as the host's:
    /// `tr::Tr t = QStringLiteral("...")`.
    Tr(const QString& text);
    virtual ~Tr();

    Tr(const Tr&) = default;            ///< copies the text
    Tr(Tr&&) = default;                 ///< moves the text
    Tr& operator=(const Tr&) = default; ///< copies the text
    Tr& operator=(Tr&&) = default;      ///< moves the text

    /// The message as given.
    QString text() const;

    /// Messages of the same text are equal.
    friend bool operator==(const Tr& a, const Tr& b) { return a.text_ == b.text_; }
    /// Messages of different texts differ.
    friend bool operator!=(const Tr& a, const Tr& b) { return !(a == b); }

private:
    QString text_;
};

/// The host's shared "undefined" word; its storage is defined by the library
/// that uses the vocabulary (libVeskIface).
extern const QString undefined;

} // namespace tr
