// What ScriptLayout.cpp and the module with Pango in it, PangoModule.cpp, pass to each other. Only
// types of C, since each of the two may have a C++ library of its own, and no exceptions.
#pragma once

#include <cstddef>

namespace quillmark::ScriptModule {

struct Font {
    const char* path;
    int index;
};

struct Run {
    const char* text;
    std::size_t size; // in bytes
    bool isBold;
};

/// A paragraph; lengths in points.
struct Request {
    const Run* runs;
    std::size_t runCount;
    double size;   // of the type
    double width;  // of the frame
    double indent; // before the first line
    double hang;   // before each other line
};

/// Receives the lines: `line` starts one, `cluster` one on the last line, and `glyph` belongs to
/// the last cluster. They are those of ScriptLayout.h. `font` is null where no font has the text.
struct Receiver {
    void* object;
    void (*line)(void* object, double ascent, double descent);
    void (*cluster)(void* object, const Font* font, std::size_t start, std::size_t end, double x,
                    double width);
    void (*glyph)(void* object, unsigned glyph, double x, double y);
};

struct Functions {
    void* (*create)(const Font* regular, const Font* bold);
    void (*destroy)(void* layout);
    void (*lines)(void* layout, const Request* request, const Receiver* receiver);
};

/// The name of the module's only function, of the type Entry.
inline constexpr const char* entryName = "quillmarkScripts";
using Entry = const Functions* (*)();

} // namespace quillmark::ScriptModule
