#include "itemiterator.h"

#include <utility>

namespace tarno {
namespace datamodel {

template <>
struct Iterator<ItemAccessor>::State
{
    std::vector<ItemHandle> handles;
    std::size_t position;
    UnspecifiedAccessor owner;
    ItemAccessor current;

    void Bind()
    {
        // At the end the last item stays bound: GetCurrent returns a reference.
        if (position < handles.size())
            current = ItemAccessor(owner.GetContext(), handles[position]);
    }
};

template <class T>
Iterator<T>::Iterator(std::shared_ptr<State> const& state)
    : m_State(state)
{}

template <class T>
Iterator<T>::Iterator(Iterator const& other)
    : m_State(std::make_shared<State>(*other.m_State))
{}

template <class T>
Iterator<T>& Iterator<T>::operator=(Iterator const& other)
{
    m_State = std::make_shared<State>(*other.m_State);
    return *this;
}

template <class T>
Iterator<T>::~Iterator() = default;

template <class T>
bool Iterator<T>::IsDone() const
{
    return m_State->position >= m_State->handles.size();
}

template <class T>
void Iterator<T>::Next()
{
    State& state = *m_State;
    ++state.position;
    // Binding anew counts references, once for each item of a rebuild.
    if (state.current.m_Context == state.owner.m_Context && !IsDone())
        state.current.m_Handle = state.handles[state.position];
    else
        state.Bind();
}

template <class T>
T& Iterator<T>::GetCurrent() const
{
    return m_State->current;
}

template class Iterator<ItemAccessor>;

} // namespace datamodel
} // namespace tarno

namespace hostkit {

using namespace tarno::datamodel;

Iterator<ItemAccessor> MakeItemIterator(UnspecifiedAccessor const& owner,
                                        std::vector<ItemHandle> handles)
{
    typedef Iterator<ItemAccessor>::State State;
    auto const state = std::make_shared<State>(State{std::move(handles), 0, owner, ItemAccessor()});
    state->Bind();
    return Iterator<ItemAccessor>(state);
}

} // namespace hostkit
