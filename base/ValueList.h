// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <set>

namespace ravlo
{

// Values in ascending order, equal ones included.
template <class Value> class ValueList
{
public:
    void Add(const Value& value) { m_values.insert(value); }
    std::size_t Count() const noexcept { return m_values.size(); }
    bool Empty() const noexcept { return m_values.empty(); }
    const Value& Last() const { return *m_values.rbegin(); } // the largest. Precondition: not empty
    auto begin() const { return m_values.begin(); }
    auto end() const { return m_values.end(); }

private:
    std::multiset<Value> m_values;
};

} // namespace ravlo
