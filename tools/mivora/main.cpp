// mivora: design, inspect, plot and apply the library's filters from a shell.
#include "command_line.hpp"
#include "commands.hpp"
#include "usage_error.hpp"

#include <exception>
#include <iostream>
#include <variant>

int main(int argc, char** argv) {
    using namespace mivora_tool;
    const ParseResult parsed = parseCommandLine(argc, argv);
    if (!parsed.invocation) {
        std::cout << parsed.output;
        if (!parsed.error.empty()) std::cerr << "mivora: " << parsed.error << "\n";
        return parsed.exitCode;
    }
    try {
        std::visit(
            [](const auto& command) {
                using T = std::decay_t<decltype(command)>;
                if constexpr (std::is_same_v<T, ListCommand>) runList(command, std::cout);
                if constexpr (std::is_same_v<T, CoefCommand>) runCoef(command, std::cout);
                if constexpr (std::is_same_v<T, ResponseCommand>) runResponse(command, std::cout);
                if constexpr (std::is_same_v<T, FilterCommand>) runFilter(command, std::cout);
                if constexpr (std::is_same_v<T, DemoCommand>) runDemo(command, std::cout);
            },
            *parsed.invocation);
    } catch (const UsageError& e) {
        std::cerr << "mivora: " << oneLine(e.what()) << "\n";
        return kUsageExit;
    } catch (const Interrupted& e) {
        std::cerr << "mivora: " << e.what() << "\n";
        return kInterruptedExit;
    } catch (const std::exception& e) {
        std::cerr << "mivora: unexpected failure: " << oneLine(e.what()) << "\n";
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
