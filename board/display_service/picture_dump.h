// Picture dumps, as the daemon fetches them.
#ifndef BOARD_DISPLAY_SERVICE_PICTURE_DUMP_H_
#define BOARD_DISPLAY_SERVICE_PICTURE_DUMP_H_

#include <filesystem>

#include "description/description.h"
#include "screen/picture.h"

namespace board::screen {

enum class DumpSide {
  kInput,   // before the picture stages: the test picture or the pattern
  kOutput,  // behind all of them: what the panel gets
};

// Writes the picture as FOLDER/pq_dump_in_WIDTHxHEIGHT.FORMAT (pq_dump_out_ for the output), the
// format being the description's for that side, and returns the file's path. A picture that is
// larger than the format can hold is cut at the right and lower edge. The file appears whole.
// Throws std::runtime_error when the description's format or size allows no dump, or on a failed
// write.
std::filesystem::path write_dump(const Picture& picture, DumpSide side,
                                 const Description& description,
                                 const std::filesystem::path& folder);

}  // namespace board::screen

#endif  // BOARD_DISPLAY_SERVICE_PICTURE_DUMP_H_
