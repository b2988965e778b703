// An empty C++ program, to compare the daemon's start with.
#include <iostream>

int main() {
  return 0;
}
