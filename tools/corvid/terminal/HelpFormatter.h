#pragma once

#include <CLI/CLI.hpp>

namespace Corvid::Tool {

/// Lays help out for terminals of 80 columns, an option's description below what it is called.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_group(std::string group, bool isPositional,
                           std::vector<const CLI::Option*> options) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
};

} // namespace Corvid::Tool
