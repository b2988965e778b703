// The owner of a cJSON tree, here since this is the lowest folder that knows cJSON.
#ifndef J2S_JSON_OWNER_H_
#define J2S_JSON_OWNER_H_

#include <cjson/cJSON.h>

#include <memory>

#include "base/owner.h"

namespace pq {

using JsonPtr = std::unique_ptr<cJSON, Call<cJSON_Delete>>;

}  // namespace pq

#endif  // J2S_JSON_OWNER_H_
