// What the program tells the one that started it. Scripts rely on the numbers.
#pragma once

namespace quillmark::cli {

enum class ExitCode {
    done = 0,
    verdictMet = 1,       // done, and a font has the verdict of --fail-on or a worse one
    wrongUse = 2,         // the arguments make no sense
    unreadableInput = 3,  // some input could not be read; the rest was done; wins over 1
    unwritableOutput = 4, // the output could not be written; wins over 3
    internalError = 70,   // a defect of the program
    interrupted = 130,    // Ctrl-C
    closedPipe = 141,     // the reader of standard output went away; what shells report for that
};

} // namespace quillmark::cli
