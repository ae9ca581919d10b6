#pragma once

#include <string>
#include <string_view>

namespace discaro::base {

// All text below the windows is UTF-8. Functions that take text accept any bytes unless they say otherwise.

bool isAscii(std::string_view text);

// Whether the bytes are well-formed UTF-8 (no surrogates, nothing above U+10FFFF, shortest forms only).
bool isValidUtf8(std::string_view bytes);

// Bytes of the 16-bit age's western code page (Windows-1252) as UTF-8. The five bytes without a character there
// become the control characters of the same value, so every byte has a text and none is lost.
std::string decodeWindows1252(std::string_view bytes);

// The one place that decides how text without a stated encoding reads: UTF-8 when it is well formed, else
// Windows-1252.
std::string decodeUnlabelled(std::string_view bytes);

// UTF-16 as UTF-8; a lone surrogate becomes U+FFFD. An odd last byte is dropped.
std::string decodeUtf16Le(std::string_view bytes);
std::string decodeUtf16Be(std::string_view bytes);

// Each character's simple lower case. A character outside ASCII never becomes an ASCII one; bytes that are not UTF-8
// stay as they are.
std::string lowerCase(std::string_view text);

// The form in which texts are compared without regard to case: canonically composed, then each character's simple
// lower case. A character outside ASCII never folds to an ASCII one; those that composition would make ASCII (U+037E,
// U+1FEF, U+212A) stay as they are. Bytes that are not UTF-8 stay as they are.
std::string foldedForComparison(std::string_view text);

// Equality of the folded forms.
bool equalFolded(std::string_view left, std::string_view right);

// The form by whose bytes texts are brought into order wherever a user sees them: canonically decomposed, so that a
// letter with an accent stands with its base letter, then each character's simple lower case, with the exceptions of
// foldedForComparison. Texts that are equal when folded have the same key; the key of ASCII text is its lower case.
std::string orderKey(std::string_view text);
void appendOrderKey(std::string& key, std::string_view text);

// ASCII only: for names that the program itself gives (tables, fields, drive letters).
std::string lowerAscii(std::string_view text);
bool equalAscii(std::string_view left, std::string_view right);

// Without the blanks (U+0020 only) at both ends.
std::string_view trimBlanks(std::string_view text);

} // namespace discaro::base
