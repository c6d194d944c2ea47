#include <iostream>

#include "Program.h"

int main(int argc, char** argv) { return cimhttp::RunProgram(argc, argv, std::cout, std::cerr); }
