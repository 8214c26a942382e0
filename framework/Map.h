// CMap: the framework's associative container (key, key argument, value, value argument)
// with start-position / get-next-association iteration. Iteration follows insertion order,
// which keeps drawing order stable from run to run.
#pragma once

#include <kygraph/Object.h>
#include <kygraph/WinTypes.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

struct __POSITION {};
using POSITION = __POSITION*;

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap : public CObject {
public:
    explicit CMap(int blockSize = 10) : m_blockSize(blockSize) {}

    int GetCount() const { return static_cast<int>(m_items.size()); }
    int GetSize() const { return GetCount(); }
    bool IsEmpty() const { return m_items.empty(); }
    void InitHashTable(UINT, bool = true) {}

    // Finds key; false (value untouched) when absent. Never inserts.
    bool Lookup(ARG_KEY key, VALUE& value) const
    {
        auto it = m_index.find(KEY(key));
        if (it == m_index.end()) return false;
        value = m_items[it->second].second;
        return true;
    }
    const std::pair<KEY, VALUE>* PLookup(ARG_KEY key) const
    {
        auto it = m_index.find(KEY(key));
        return it == m_index.end() ? nullptr : &m_items[it->second];
    }
    void SetAt(ARG_KEY key, ARG_VALUE value) { (*this)[key] = value; }
    // Inserts a default value when key is absent.
    VALUE& operator[](ARG_KEY key)
    {
        KEY k(key);
        auto it = m_index.find(k);
        if (it != m_index.end()) return m_items[it->second].second;
        m_index.emplace(k, m_items.size());
        m_items.emplace_back(k, VALUE());
        return m_items.back().second;
    }
    bool RemoveKey(ARG_KEY key)
    {
        auto it = m_index.find(KEY(key));
        if (it == m_index.end()) return false;
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(it->second));
        Reindex();
        return true;
    }
    void RemoveAll()
    {
        m_items.clear();
        m_index.clear();
    }

    POSITION GetStartPosition() const { return m_items.empty() ? nullptr : ToPos(0); }
    // Reads the association at pos and advances pos (null after the last one).
    void GetNextAssoc(POSITION& pos, KEY& key, VALUE& value) const
    {
        size_t i = FromPos(pos);
        if (i >= m_items.size()) { pos = nullptr; return; }
        key = m_items[i].first;
        value = m_items[i].second;
        pos = (i + 1 < m_items.size()) ? ToPos(i + 1) : nullptr;
    }

private:
    static POSITION ToPos(size_t i) { return reinterpret_cast<POSITION>(static_cast<std::uintptr_t>(i + 1)); }
    static size_t FromPos(POSITION p)
    {
        return p ? static_cast<size_t>(reinterpret_cast<std::uintptr_t>(p)) - 1 : static_cast<size_t>(-1);
    }
    void Reindex()
    {
        m_index.clear();
        for (size_t i = 0; i < m_items.size(); ++i) m_index.emplace(m_items[i].first, i);
    }

    [[maybe_unused]] int m_blockSize;
    std::vector<std::pair<KEY, VALUE>> m_items;
    std::map<KEY, size_t> m_index;
};
