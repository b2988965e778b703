// PNG files by libpng.
#ifndef PQCLIENT_PNG_H_
#define PQCLIENT_PNG_H_

#include "pqclient/dump.h"

namespace pqclient {

// The bytes of a whole PNG file. Throws Error kFile with libpng's reason.
Bytes encode_png(const Picture& picture);

}  // namespace pqclient

#endif  // PQCLIENT_PNG_H_
