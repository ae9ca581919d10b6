#include "support/catalogue/FreshProgram.h"

#include <type_traits>

namespace discaro::test {

void FreshProgram::reset() {
    std::apply([](auto&... variables) { ((variables = std::remove_reference_t<decltype(variables)>()), ...); },
               sharedVariables());
}

} // namespace discaro::test
