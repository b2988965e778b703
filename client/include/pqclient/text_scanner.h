// Lines and numbers of users' text files: tables as .csv or .cube. Numbers are those of the C
// locale, whatever the user's locale is.
#ifndef PQCLIENT_TEXT_SCANNER_H_
#define PQCLIENT_TEXT_SCANNER_H_

#include <optional>
#include <string_view>
#include <vector>

namespace pqclient {

// Removes and returns the first line, without its end ("\n" or "\r\n").
std::string_view take_line(std::string_view& text);

// The words of a line, split at any of the separators, none of them empty. A # and everything after
// it is ignored.
std::vector<std::string_view> words_of(std::string_view line, std::string_view separators);

// Empty unless the whole word is a finite number.
std::optional<double> decimal_in(std::string_view word);

}  // namespace pqclient

#endif  // PQCLIENT_TEXT_SCANNER_H_
