#include <corvane/manager/KeyParts.h>

namespace corvane {
namespace {

constexpr std::size_t largestKept = 1024; // units

struct Spare {
    wstring section;
    wstring tag;
};

// Never destroyed: managers may be used by the destructors of static objects.
Spare& TheSpare() noexcept {
    alignas(Spare) static unsigned char memory[sizeof(Spare)];
    static auto& spare = *new (memory) Spare;
    return spare;
}

void GiveBack(wstring& buffer, wstring& spare) noexcept {
    if (buffer.capacity() > largestKept || buffer.capacity() < spare.capacity())
        return;
    buffer.clear();
    spare.swap(buffer);
}

} // namespace

KeyParts::KeyParts() noexcept {
    section.swap(TheSpare().section);
    tag.swap(TheSpare().tag);
}

KeyParts::~KeyParts() {
    GiveBack(section, TheSpare().section);
    GiveBack(tag, TheSpare().tag);
}

} // namespace corvane
