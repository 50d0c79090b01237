#include <iostream>

#include "app/picture_writers.h"
#include "batch/run_batch.h"
#include "core/file_limit.h"

int main(int argc, char** argv) {
    anomalis::take_file_limit_as_error();
    const auto pictures = anomalis::make_picture_writer(argc, argv);
    return anomalis::batch::run_batch(argc, argv, std::cout, std::cerr, pictures.get());
}
