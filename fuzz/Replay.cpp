// Runs a fuzz target over files and folders of inputs, in builds without the fuzzer's own main.
#include "Fuzz.h"

#include <iostream>

int main(int count, char** arguments) {
    std::size_t inputs = 0;
    const std::vector<std::string> folders(arguments + 1, arguments + count);
    for (const std::string& folder : folders) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            const std::string bytes = fuzz::Bytes(entry.path().string());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++inputs;
        }
    }
    std::cout << inputs << " inputs\n";
    return inputs == 0;
}
