// /system/bin/getprop of the simulated board.
#include <iostream>
#include <string>

#include "description/description.h"
#include "properties/property_store.h"

int main(int argc, char** argv) {
  const board::PropertyStore store(board::board_folder() / "properties");
  if (argc > 3) {
    std::cerr << "usage: getprop [NAME [DEFAULT]]\n";
    return 1;
  }
  if (argc == 1) {
    for (const auto& [name, value] : store.all()) {
      std::cout << '[' << name << "]: [" << value << "]\n";
    }
    return 0;
  }
  const std::string value = store.get(argv[1]).value_or("");
  std::cout << (value.empty() && argc == 3 ? argv[2] : value) << '\n';
  return 0;
}
