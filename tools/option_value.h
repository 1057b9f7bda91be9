// An option whose value is read by one of the functions of argument_values.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

namespace captionfx {

/// Adds an option whose value `parse` reads. `expected` completes the error line "--size: 'big' is not ...".
template <class Target, class Value>
CLI::Option* AddValue(CLI::App& app, const std::string& name, Target& target,
                      std::optional<Value> (*parse)(std::string_view), const char* expected, const char* help) {
    const auto read = [&target, parse, name, expected](const std::string& text) {
        auto value = parse(text);
        if (!value) throw CLI::ValidationError(name, "'" + text + "' is not " + expected);
        target = *std::move(value);
    };
    return app.add_option_function<std::string>(name, read, help);
}

}  // namespace captionfx
