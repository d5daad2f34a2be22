#pragma once

#include "Tr.h"

#include <stdexcept>

// The host's exception base: a runtime error that carries a translatable
// message. what() gives the message's text in UTF-8.
class BasicException : public std::runtime_error {
public:
    explicit BasicException(const tr::Tr& message);
    ~BasicException() override;

    const tr::Tr& message() const;

private:
    tr::Tr message_;
};
