#include "cli/shell/shellfiles.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace MCBin {

namespace {

using Commands = std::vector<const CLI::App*>;

Commands CommandsOf(const CLI::App& app) { return app.get_subcommands(nullptr); }

// An option with a dash.
struct Flag {
  std::vector<std::string> names;  // "-o", "--output"
  std::string typeName;            // empty: takes no value
  std::vector<std::string> choices;
  std::string description;

  bool TakesFile() const { return typeName == "FILE" || typeName == "DIR"; }
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::vector<Flag> FlagsOf(const CLI::App& command) {
  std::vector<Flag> flags;
  for (const CLI::Option* option : command.get_options()) {
    if (!option->nonpositional()) continue;
    Flag flag;
    for (const std::string& name : option->get_snames()) flag.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) flag.names.push_back("--" + name);
    if (option->get_items_expected_max() > 0) flag.typeName = option->get_type_name();
    if (flag.typeName.find('|') != std::string::npos) flag.choices = Split(flag.typeName, '|');
    flag.description = option->get_description();
    flags.push_back(std::move(flag));
  }
  return flags;
}

// What a command does, in a line.
std::string Summary(const CLI::App& app) { return Split(app.get_description(), '\n').front(); }

// Inside single quotes of a shell.
std::string Quoted(std::string_view text, std::string_view quoteInside) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') {
      quoted += quoteInside;
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

std::string NamesOf(const Commands& commands) {
  std::string names;
  for (const CLI::App* command : commands)
    names += (names.empty() ? "" : " ") + command->get_name();
  return names;
}

// In a troff line: no escapes, no control line, hyphens that can be copied.
std::string Troff(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else {
      escaped += c;
    }
  }
  const bool isControl = !escaped.empty() && (escaped[0] == '.' || escaped[0] == '\'');
  return isControl ? "\\&" + escaped : escaped;
}

std::string ManualOption(const CLI::Option& option) {
  std::string names;
  if (option.nonpositional()) {
    for (const std::string& name : Split(option.get_name(false, true), ',')) {
      names += (names.empty() ? "\\fB" : ", \\fB") + Troff(name) + "\\fR";
    }
    if (option.get_items_expected_max() > 0) {
      names += " \\fI" + Troff(option.get_type_name()) + "\\fR";
    }
  } else {
    names = "\\fI" + Troff(option.get_name(true)) + "\\fR";
  }
  return fmt::format(".TP\n{}\n{}\n", names, Troff(option.get_description()));
}

std::string ManualCommand(const CLI::App& command) {
  std::string text = fmt::format(".SS mcbin {}\n{}\n.PP\n.nf\n", Troff(command.get_name()),
                                 Troff(Summary(command)));
  const std::vector<std::string> lines = Split(command.get_description(), '\n');
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (!lines[i].empty()) text += Troff(lines[i]) + "\n";
  }
  text += ".fi\n";
  for (const CLI::Option* option : command.get_options()) text += ManualOption(*option);
  return text;
}

constexpr const char* kManualEnd = R"(.SH FILES
Input is CSV text with a header row. Bins are exchanged in bin files, which are JSON.
.SH EXIT STATUS
.TP
0
done
.TP
1
the input was refused or the run failed; the message names the place
.TP
2
wrong usage
.TP
3
with \fB\-\-strict\fR: done, but a result has a warning or an error
.TP
130
cancelled with Ctrl\-C (or SIGTERM)
.SH ENVIRONMENT
.TP
\fBNO_COLOR\fR
when it is set and not empty, no colours unless \fB\-\-color always\fR is given
.TP
\fBTMPDIR\fR
where temporary files go, unless \fB\-\-temp\-dir\fR says otherwise
.TP
\fBLC_ALL\fR, \fBLC_CTYPE\fR, \fBLANG\fR
bars are drawn in a UTF\-8 locale
)";

}  // namespace

std::string WriteBashCompletion(const CLI::App& app) {
  std::string words;
  std::string values;
  for (const CLI::App* command : CommandsOf(app)) {
    std::string names;
    for (const Flag& flag : FlagsOf(*command)) {
      for (const std::string& name : flag.names) {
        names += (names.empty() ? "" : " ") + name;
        if (flag.typeName.empty() || flag.TakesFile()) continue;
        values +=
            fmt::format("    {}:{}) COMPREPLY=($(compgen -W \"{}\" -- \"$word\")); return ;;\n",
                        command->get_name(), name, fmt::join(flag.choices, " "));
      }
    }
    words += fmt::format("    {}) words=\"{}\" ;;\n", command->get_name(), names);
  }
  return fmt::format(R"(# bash completion for mcbin

_mcbin() {{
  local word=${{COMP_WORDS[COMP_CWORD]}} command=${{COMP_WORDS[1]}} words
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W "{} --help --version" -- "$word"))
    return
  fi
  case "$command:${{COMP_WORDS[COMP_CWORD - 1]}}" in
{}  esac
  case "$command" in
{}  esac
  if [[ $word == -* ]]; then
    COMPREPLY=($(compgen -W "$words" -- "$word"))
  else
    COMPREPLY=($(compgen -f -- "$word"))
    compopt -o filenames
  fi
}}
complete -F _mcbin mcbin
)",
                     NamesOf(CommandsOf(app)), values, words);
}

std::string WriteZshCompletion(const CLI::App& app) {
  const auto escaped = [](const std::string& text) {  // for _arguments
    std::string result;
    for (const char c : text) {
      if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
      result += c;
    }
    return result;
  };
  std::string commands;
  std::string cases;
  for (const CLI::App* command : CommandsOf(app)) {
    commands +=
        "    " + Quoted(command->get_name() + ":" + escaped(Summary(*command)), "'\\''") + "\n";
    cases += fmt::format("    {}) arguments=(\n", command->get_name());
    for (const Flag& flag : FlagsOf(*command)) {
      std::string value;
      if (!flag.typeName.empty()) {
        const std::string action = flag.TakesFile() ? "_files"
                                   : flag.choices.empty()
                                       ? " "
                                       : fmt::format("({})", fmt::join(flag.choices, " "));
        value = fmt::format(":{}:{}", escaped(flag.typeName), action);
      }
      for (const std::string& name : flag.names) {
        cases += "      " +
                 Quoted(fmt::format("*{}[{}]{}", name, escaped(flag.description), value), "'\\''") +
                 "\n";
      }
    }
    cases += "      '*:file:_files') ;;\n";
  }
  return fmt::format(R"(#compdef mcbin

_mcbin() {{
  local -a commands arguments
  commands=(
{}  )
  if (( CURRENT == 2 )); then
    _describe -t commands 'mcbin command' commands
    _arguments '--help[show help]' '--version[show the version]'
    return
  fi
  case "$words[2]" in
{}  esac
  shift words
  (( CURRENT-- ))
  _arguments $arguments
}}

if [ "$funcstack[1]" = "_mcbin" ]; then
  _mcbin "$@"
else
  compdef _mcbin mcbin
fi
)",
                     commands, cases);
}

std::string WriteFishCompletion(const CLI::App& app) {
  std::string text = fmt::format(
      "# fish completion for mcbin\n\n"
      "set -l commands {}\n"
      "complete -c mcbin -n \"not __fish_seen_subcommand_from $commands\" -f -l help "
      "-d 'Show help'\n"
      "complete -c mcbin -n \"not __fish_seen_subcommand_from $commands\" -f -l version "
      "-d 'Show the version'\n",
      NamesOf(CommandsOf(app)));
  for (const CLI::App* command : CommandsOf(app)) {
    text += fmt::format(
        "complete -c mcbin -n \"not __fish_seen_subcommand_from $commands\" -f -a {} -d {}\n",
        command->get_name(), Quoted(Summary(*command), "\\'"));
    for (const Flag& flag : FlagsOf(*command)) {
      text +=
          fmt::format("complete -c mcbin -n '__fish_seen_subcommand_from {}'", command->get_name());
      for (const std::string& name : flag.names) {
        text += name[1] == '-' ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!flag.typeName.empty()) text += flag.TakesFile() ? " -r -F" : " -x";
      if (!flag.choices.empty()) text += fmt::format(" -a '{}'", fmt::join(flag.choices, " "));
      text += " -d " + Quoted(flag.description, "\\'") + "\n";
    }
  }
  return text;
}

std::string WriteManual(const CLI::App& app) {
  std::string text = fmt::format(
      ".TH MCBIN 1 \"\" \"mcbin {}\" \"User commands\"\n"
      ".SH NAME\nmcbin \\- bin the variables of a CSV file\n"
      ".SH SYNOPSIS\n\\fBmcbin\\fR \\fIcommand\\fR [\\fIoptions\\fR] [\\fIfiles\\fR]\n"
      ".SH DESCRIPTION\n{}\nResults go to standard output, everything else to standard error.\n"
      ".PP\n.nf\n",
      MCBINNING_VERSION, Troff(Summary(app)));
  const std::vector<std::string> lines = Split(app.get_description(), '\n');
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (!lines[i].empty()) text += Troff(lines[i]) + "\n";
  }
  text += ".fi\n.SH COMMANDS\n";
  for (const CLI::App* command : CommandsOf(app)) text += ManualCommand(*command);
  return text + kManualEnd;
}

}  // namespace MCBin
