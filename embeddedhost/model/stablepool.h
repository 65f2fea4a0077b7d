#ifndef EMBEDDEDHOST_STABLEPOOL_H
#define EMBEDDEDHOST_STABLEPOOL_H

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace embeddedhost {

/// Objects that keep their address for as long as the pool lives. They lie side by side in the
/// order they were made, which makes walking a large library several times faster than single
/// allocations would.
template <class T>
class StablePool
{
public:
    template <class... Arguments>
    T& Add(Arguments&&... arguments)
    {
        if (m_Size % kBlockSize == 0)
            m_Blocks.push_back(std::make_unique<Block>());
        T& added =
            (*m_Blocks.back())[m_Size % kBlockSize].emplace(std::forward<Arguments>(arguments)...);
        ++m_Size;
        return added;
    }

private:
    static constexpr std::size_t kBlockSize = 256;
    typedef std::array<std::optional<T>, kBlockSize> Block;

    std::vector<std::unique_ptr<Block>> m_Blocks;
    std::size_t m_Size = 0;
};

} // namespace embeddedhost

#endif
