#include <iostream>

#include "batch/run_batch.h"

int main(int argc, char** argv) {
    return anomalis::run_batch(argc, argv, std::cout, std::cerr, nullptr);
}
