#include "base/Sentence.h"

namespace discaro::base {

std::string filledIn(std::string_view sentence, std::initializer_list<std::string_view> values) {
    std::string text;
    while (!sentence.empty()) {
        const size_t place = sentence.find('%');
        text.append(sentence.substr(0, place));
        if (place == std::string_view::npos)
            break;
        sentence.remove_prefix(place + 1);
        const char digit = sentence.empty() ? '0' : sentence.front();
        const auto number = static_cast<size_t>(digit - '0');
        if (digit < '1' || digit > '9' || number > values.size()) {
            text += '%';
            continue;
        }
        text.append(*(values.begin() + number - 1));
        sentence.remove_prefix(1);
    }
    return text;
}

} // namespace discaro::base
