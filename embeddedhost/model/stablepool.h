#ifndef EMBEDDEDHOST_STABLEPOOL_H
#define EMBEDDEDHOST_STABLEPOOL_H

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace embeddedhost {

/// Objects that keep their address for as long as the pool lives. They lie contiguously in the
/// order they were made, which makes iterating a large library several times faster than single
/// allocations would.
template <class T>
class StablePool
{
public:
    StablePool() = default;
    StablePool(StablePool const&) = delete;
    StablePool& operator=(StablePool const&) = delete;

    ~StablePool()
    {
        for (std::size_t place = 0; place < m_Size; ++place)
            std::launder(reinterpret_cast<T*>(GetMemory(place)))->~T();
    }

    template <class... Arguments>
    T& Add(Arguments&&... arguments)
    {
        if (m_Size == m_Blocks.size() * kBlockSize)
            m_Blocks.push_back(std::make_unique<Block>());
        T* const added = new (GetMemory(m_Size)) T(std::forward<Arguments>(arguments)...);
        ++m_Size;
        return *added;
    }

private:
    static constexpr std::size_t kBlockSize = 256;

    struct Block
    {
        alignas(T) std::byte memory[kBlockSize * sizeof(T)];
    };

    std::byte* GetMemory(std::size_t place) const
    {
        return m_Blocks[place / kBlockSize]->memory + place % kBlockSize * sizeof(T);
    }

    std::vector<std::unique_ptr<Block>> m_Blocks;
    std::size_t m_Size = 0;
};

} // namespace embeddedhost

#endif
