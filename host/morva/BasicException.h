#pragma once

#include "Tr.h"

#include <stdexcept>

/// The host's exception base: a runtime error that carries a translatable
/// message. what() gives the message's text in UTF-8. vesk::Exception and
/// vesk::NetworkException derive from it, so a handler for BasicException
/// catches both.
class BasicException : public std::runtime_error {
public:
    /// Keeps `message`; what() is its text in UTF-8.
    explicit BasicException(const tr::Tr& message);
    ~BasicException() override;

    /// The message as given to the constructor.
    const tr::Tr& message() const;

private:
    tr::Tr message_;
};
