#pragma once

#include <morva/BasicException.h>

namespace vesk {

/// A failure that a service reported: its reply's "code" and "userMsg". Also
/// the base of vesk::NetworkException. `what()` is the message in UTF-8.
class Exception : public BasicException {
public:
    /// A service's refusal: its code and its message for the user.
    Exception(int code, const tr::Tr& message);
    /// A failure with code 0.
    explicit Exception(const tr::Tr& message);
    ~Exception() override;

    /// The service's "code"; 0 when the reply had none, and for network failures.
    int code() const;

private:
    int code_ = 0;
};

} // namespace vesk
