// The peer of `quorvel --version`: a C++ program that prints a line.
#include <iostream>

int main() {
    std::cout << "a line\n";
    return 0;
}
