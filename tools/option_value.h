// Options whose values are read by the functions of argument_values.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/text_encoding.h"

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

/// The same for an option that may be given often; each adds a value.
template <class Value>
CLI::Option* AddValues(CLI::App& app, const std::string& name, std::vector<Value>& target,
                       std::optional<Value> (*parse)(std::string_view), const char* expected, const char* help) {
    const auto read = [&target, parse, name, expected](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            auto value = parse(text);
            if (!value) throw CLI::ValidationError(name, "'" + text + "' is not " + expected);
            target.push_back(*std::move(value));
        }
    };
    return app.add_option_function<std::vector<std::string>>(name, read, help)->expected(1)->take_all();
}

/// Adds an option whose value is the name of a file.
template <class Target>
CLI::Option* AddPath(CLI::App& app, const std::string& name, Target& target, const char* help) {
    const auto read = [&target](const std::string& text) { target = PathFromUtf8(text); };
    return app.add_option_function<std::string>(name, read, help);
}

}  // namespace captionfx
