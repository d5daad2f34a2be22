#pragma once

#include "Exception.h"

namespace vesk {

/// The exchange failed in the transport: no reply, or a reply cut short. The
/// message is the transport's; the code is always 0. A handler for
/// vesk::Exception catches it too, so catch this one first to tell them apart.
///
/// When the message ends "the request was sent, so the server may have
/// received it", the service may have acted on the call: ask it before
/// repeating a call that changes state.
class NetworkException : public Exception {
public:
    /// A network failure described by the transport's message.
    explicit NetworkException(const tr::Tr& message);
    ~NetworkException() override;
};

} // namespace vesk
