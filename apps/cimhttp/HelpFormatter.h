#pragma once

#include "HelpLayout.h"

#include <CLI/CLI.hpp>

#include <string>
#include <utility>

namespace cimhttp {

/// Wraps help at the width of the terminal, and tells what the user writes rather than what the parser makes of it.
class HelpFormatter : public CLI::Formatter {
  public:
    explicit HelpFormatter(HelpLayout layout) : layout_(layout) {
        label("Positionals", "Arguments");
        label("SUBCOMMAND", "COMMAND");
    }

    std::string make_description(const CLI::App* app) const override {
        return layout_.Prose(app->get_description()) + '\n';
    }

    std::string make_footer(const CLI::App* app) const override { return app->get_footer(); }

    std::string make_usage(const CLI::App* app, std::string name) const override {
        return layout_.Prose(CLI::Formatter::make_usage(app, std::move(name)));
    }

    std::string make_subcommand(const CLI::App* command) const override {
        return layout_.Entry(command->get_name(), command->get_description());
    }

    std::string make_option(const CLI::Option* option, bool isPositional) const override {
        const std::string name = isPositional ? option->get_name(true) : WrittenForm(*option);
        return layout_.Entry(name, option->get_description());
    }

  private:
    /// `-c, --connection NAME`
    static std::string WrittenForm(const CLI::Option& option) {
        std::string form;
        for (const std::string& letter : option.get_snames()) {
            form += (form.empty() ? "-" : ", -") + letter;
        }
        for (const std::string& word : option.get_lnames()) {
            form += (form.empty() ? "--" : ", --") + word;
        }
        if (!option.get_type_name().empty()) {
            form += ' ' + option.get_type_name();
        }
        return option.get_expected_max() > 1 ? form + " ..." : form;
    }

    HelpLayout layout_;
};

} // namespace cimhttp
