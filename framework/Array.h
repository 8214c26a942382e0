// CArray: the framework's growable array template (element type, argument type).
#pragma once

#include <kygraph/InvalidArgException.h>
#include <kygraph/Object.h>

#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    CArray() = default;

    int GetSize() const { return static_cast<int>(m_data.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_data.empty(); }
    int GetUpperBound() const { return GetSize() - 1; }
    void SetSize(int n) { m_data.resize(n > 0 ? static_cast<size_t>(n) : 0); }

    // Element access outside 0..count-1 throws CInvalidArgException.
    const TYPE& GetAt(int i) const { return m_data.at(Check(i)); }
    TYPE& ElementAt(int i) { return m_data.at(Check(i)); }
    void SetAt(int i, ARG_TYPE v) { m_data.at(Check(i)) = v; }
    TYPE& operator[](int i) { return ElementAt(i); }
    const TYPE& operator[](int i) const { return GetAt(i); }
    TYPE* GetData() { return m_data.data(); }
    const TYPE* GetData() const { return m_data.data(); }

    int Add(ARG_TYPE v) { m_data.push_back(v); return GetSize() - 1; }
    void InsertAt(int i, ARG_TYPE v)
    {
        if (i < 0 || i > GetSize()) throw CInvalidArgException();
        m_data.insert(m_data.begin() + i, v);
    }
    void RemoveAt(int i, int count = 1)
    {
        Check(i);
        if (count < 0 || count > GetSize() - i) throw CInvalidArgException();
        m_data.erase(m_data.begin() + i, m_data.begin() + i + count);
    }
    void RemoveAll() { m_data.clear(); }
    void Copy(const CArray& src) { m_data = src.m_data; }
    int Append(const CArray& src)
    {
        int first = GetSize();
        m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
        return first;
    }

    typename std::vector<TYPE>::const_iterator begin() const { return m_data.begin(); }
    typename std::vector<TYPE>::const_iterator end() const { return m_data.end(); }

private:
    size_t Check(int i) const
    {
        if (i < 0 || i >= GetSize()) throw CInvalidArgException();
        return static_cast<size_t>(i);
    }

    std::vector<TYPE> m_data;
};
