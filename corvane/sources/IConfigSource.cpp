#include <corvane/foundations/FailureReport.h>
#include <corvane/sources/IConfigSource.h>

IConfigSource::IConfigSource() = default;
IConfigSource::IConfigSource(const IConfigSource&) = default;
IConfigSource& IConfigSource::operator=(const IConfigSource&) = default;
IConfigSource::~IConfigSource() = default;

std::int64_t IConfigSource::GetModifyTime() const {
    return m_modifyTime;
}

std::int32_t IConfigSource::WriteChanges(const std::vector<corvane::ConfigChange>&) {
    return failure_report(FAILURE_GENERAL, CORVANE_TEXT("this source does not make many changes at once"),
                          configChannel, "IConfigSource::WriteChanges", __LINE__);
}
