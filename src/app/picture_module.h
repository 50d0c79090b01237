#pragma once

#include "batch/picture_writer.h"

// What the module of pictures shows: a part of anomalis-batch that is loaded when a picture is asked for,
// since its window system takes longer to start than most commands take. It uses the rooms of the program
// that loads it.
extern "C" {

/// Of the build that the module belongs to.
const char* anomalis_pictures_version();

/// A writer on the heap. `argc` and `argv` are those of main and must outlive it.
anomalis::batch::PictureWriter* anomalis_make_picture_writer(int* argc, char** argv);
}
