#pragma once

#include "base/RuntimeError.h"

#include <map>
#include <string>

namespace discaro::kit {

// The controls of one name, told apart by an index: Command1(0), Command1(3). Indexes may have
// gaps. The elements belong to their window; the array only finds them.
template <typename T>
class ControlArray {
public:
    // Throws base::RuntimeError InvalidValue when the array has no such element.
    T& operator()(int index) const {
        const auto place = m_elements.find(index);
        if (place == m_elements.end())
            throw base::RuntimeError(base::ErrorNumber::InvalidValue,
                                     "no control with the index " + std::to_string(index));
        return *place->second;
    }
    bool contains(int index) const { return m_elements.contains(index); }
    int count() const { return static_cast<int>(m_elements.size()); }

    // Pairs of index and element, by ascending index.
    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

    void put(int index, T* element) { m_elements[index] = element; }

private:
    std::map<int, T*> m_elements;
};

} // namespace discaro::kit
