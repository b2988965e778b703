// /system/bin/setprop of the simulated board.
#include <iostream>

#include "description/description.h"
#include "properties/property_store.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: setprop NAME VALUE\n";
    return 1;
  }
  const board::PropertyStore store(board::board_folder() / "properties");
  if (const int result = store.set(argv[1], argv[2]); result != 0) {
    std::cerr << "setprop: " << board::PropertyStore::refusal(argv[1], argv[2], result) << '\n';
    return 1;
  }
  return 0;
}
