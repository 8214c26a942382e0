// CVoArray: an indexed array of values with a count, as the chart hands point lists to the
// polyline primitive. Indexing outside 0..count-1 throws CInvalidArgException.
#pragma once

#include <kygraph/InvalidArgException.h>

#include <vector>

template <class T>
class CVoArray {
public:
    CVoArray() = default;

    int GetSize() const { return static_cast<int>(m_data.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_data.empty(); }
    int Add(const T& v) { m_data.push_back(v); return GetSize() - 1; }
    void RemoveAll() { m_data.clear(); }
    void Reserve(int n) { if (n > 0) m_data.reserve(static_cast<size_t>(n)); }

    T& operator[](int i) { return m_data[Check(i)]; }
    const T& operator[](int i) const { return m_data[Check(i)]; }
    T& GetAt(int i) { return m_data[Check(i)]; }
    const T& GetAt(int i) const { return m_data[Check(i)]; }
    const T* GetData() const { return m_data.data(); }

private:
    size_t Check(int i) const
    {
        if (i < 0 || i >= GetSize()) throw CInvalidArgException();
        return static_cast<size_t>(i);
    }

    std::vector<T> m_data;
};
