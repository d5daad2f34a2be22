// The minimal host's libmorvanetwork.so holds nothing: the code of both
// stand-ins is in its libMorva.so, and this library only answers the
// library's NEEDED entry.
