#include <iostream>

#include "app/picture_writers.h"
#include "batch/run_batch.h"

int main(int argc, char** argv) {
    const auto pictures = anomalis::make_picture_writer(argc, argv);
    return anomalis::batch::run_batch(argc, argv, std::cout, std::cerr, pictures.get());
}
