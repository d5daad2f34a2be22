#pragma once

#include "Exception.h"

namespace vesk {

// The exchange failed in the transport: no reply, or a reply cut short. The
// message is the transport's; the code is always 0. A handler for
// vesk::Exception catches it too, so catch this one first to tell them apart.
class NetworkException : public Exception {
public:
    explicit NetworkException(const tr::Tr& message);
    ~NetworkException() override;
};

} // namespace vesk
