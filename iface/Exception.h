#pragma once

#include <morva/BasicException.h>

namespace vesk {

// A failure that a service reported: its reply's "code" and "userMsg".
class Exception : public BasicException {
public:
    Exception(int code, const tr::Tr& message);
    explicit Exception(const tr::Tr& message); // code 0
    ~Exception() override;

    int code() const;

private:
    int code_ = 0;
};

} // namespace vesk
