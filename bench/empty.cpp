// What a C++ program costs that does nothing.
#include <iostream>

int main() {
  return 0;
}
