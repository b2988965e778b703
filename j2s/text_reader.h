// From JSON text to structure without a tree: the text is walked, and members are stored as they
// are met.
//
// The result equals the tree's to the last bit, or there is none, and the tree decides. The reader
// gives up on everything that json_cursor.h does not accept, and on
//   - tables with dynamic arrays, and members that are enumerations, strings in arrays, or arrays
//     of arrays;
//   - a member's value of another kind than the member's: a text for a number, and so on;
//   - members out of the tables' order, or twice; keys that are no members may stand anywhere.
// A document that the daemon has saved has none of these.
#ifndef J2S_TEXT_READER_H_
#define J2S_TEXT_READER_H_

#include "j2s/member.h"

namespace j2s {

// Loads the first value of `text`, which a 0 ends, into the structure or the member. The text has
// to be one that json_cursor.h accepts, without index keys (j2s::is_known_json). False: the tree of
// the text has to be loaded, which stores again all that was stored here. A null `structure` is not
// written.
bool read_struct_text(const j2s_ctx& ctx, int struct_index, const char* text, std::byte* structure);
bool read_member_text(const j2s_ctx& ctx, const Member& member, const char* text,
                      std::byte* structure);

}  // namespace j2s

#endif  // J2S_TEXT_READER_H_
