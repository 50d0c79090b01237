#pragma once

namespace anomalis {

/// To be called once by a program that starts: a file that grows beyond the limit of the process (`ulimit
/// -f`) is an error of the write, "File too large", and no end of the program. Programs that it starts are
/// not concerned.
void take_file_limit_as_error();

}  // namespace anomalis
