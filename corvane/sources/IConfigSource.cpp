#include <corvane/sources/IConfigSource.h>

IConfigSource::IConfigSource() = default;
IConfigSource::IConfigSource(const IConfigSource&) = default;
IConfigSource& IConfigSource::operator=(const IConfigSource&) = default;
IConfigSource::~IConfigSource() = default;

std::int64_t IConfigSource::GetModifyTime() const {
    return m_modifyTime;
}
