// Lines and numbers of the text files that people bring: tables as .csv or .cube. Numbers are those
// of the C locale, whatever the user's is.
#ifndef PQCLIENT_TEXT_SCANNER_H_
#define PQCLIENT_TEXT_SCANNER_H_

#include <optional>
#include <string_view>
#include <vector>

namespace pqclient {

// Cuts off and returns the first line, without its end ("\n" or "\r\n").
std::string_view take_line(std::string_view& text);

// The words of a line between any of the separators, none of them empty. What follows a # is left
// out.
std::vector<std::string_view> words_of(std::string_view line, std::string_view separators);

// Nothing unless the whole word is a finite number.
std::optional<double> decimal_in(std::string_view word);

}  // namespace pqclient

#endif  // PQCLIENT_TEXT_SCANNER_H_
