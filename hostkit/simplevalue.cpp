#include <datamodel.h>

namespace tarno {
namespace datamodel {

CSimpleValue::CSimpleValue()
    : m_IsValid(false)
{}

CSimpleValue::CSimpleValue(std::string const& text)
    : m_IsValid(true)
    , m_Text(text)
{}

bool CSimpleValue::IsValid() const
{
    return m_IsValid;
}

std::string const& CSimpleValue::GetText() const
{
    return m_Text;
}

} // namespace datamodel
} // namespace tarno
