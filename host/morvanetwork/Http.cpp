// The HTTP values are plain structs; this unit gives Part's meta-object a home.
#include "Http.h"
