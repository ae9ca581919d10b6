#pragma once

#include "disc/medium/Medium.h"

#include <string>
#include <string_view>

namespace discaro::disc {

// What reading one key of an initialisation file gives: UTF-8, and the number of characters (code
// points) in it.
struct IniText {
    std::string text;
    int copied = 0;
};

// The value of a key by the platform's rule. The first section of the name, in it the first line of
// the key. Names compare without regard to case; blanks and tabs around section names, keys and
// values do not count; lines that begin with ";" are comments, lines without "=" are nothing. One
// pair of matching quotes around the value, '..' or
// "..", is taken off, with the blanks inside kept. The value ends at a NUL. Without the section or
// the key the default text is the value; a key without a value gives an empty text.
//
// The result holds at most bufferLength - 1 whole characters. Encodings and the end of the text are
// those of TextLineReader; at most kTextLimit bytes are read. Throws only what the source throws.
IniText privateProfileString(const ByteSource& source, std::string_view section, std::string_view key,
                             std::string_view defaultText, int bufferLength);

} // namespace discaro::disc
