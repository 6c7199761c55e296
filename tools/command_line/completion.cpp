#include "tools/command_line/completion.h"

#include <cstdio>
#include <functional>
#include <map>
#include <memory>

#include "tools/command_line/option_facts.h"

namespace vrk::tool {
namespace {

std::string replaced(const std::string& text, const std::map<char, std::string>& by) {
  std::string result;
  for (const char c : text) {
    const auto found = by.find(c);
    result += found == by.end() ? std::string(1, c) : found->second;
  }
  return result;
}

std::vector<std::string> names_of(const CLI::Option& option) {
  return CLI::detail::split(option.get_name(false, true), ',');
}

std::string words_of(const option_facts& facts) { return CLI::detail::join(facts.words, " "); }

// Words for what begins with -, or behind an option that takes one of a list; file names elsewhere.
std::string for_bash(const CLI::App& app) {
  std::string commands, options, values;
  for (const CLI::App* const command : shown_commands(app)) {
    commands += command->get_name() + " ";
    std::string names;
    for (const CLI::Option* const option : shown_options(*command)) {
      const option_facts facts = facts_of(*option);
      for (const std::string& name : names_of(*option)) {
        names += name + " ";
        if (!facts.words.empty()) {
          values += "    " + command->get_name() + "\\ " + name + ") words=\"" + words_of(facts) + "\" ;;\n";
        } else if (!facts.type.empty()) {
          values += "    " + command->get_name() + "\\ " + name + ") return ;;\n";
        }
      }
    }
    options += "    " + command->get_name() + "\\ *) options=\"" + names + "\" ;;\n";
  }
  return R"(# Completion of vrk for bash.
_vrk() {
  local at=$COMP_CWORD word=${COMP_WORDS[COMP_CWORD]} words= options=
  COMPREPLY=()
  if [ "$word" = = ]; then word=; elif [ "${COMP_WORDS[at-1]}" = = ]; then at=$((at - 1)); fi
  case "${COMP_WORDS[1]} ${COMP_WORDS[at-1]}" in
)" + values +
         R"(  esac
  case "${COMP_WORDS[1]} " in
)" + options +
         R"(  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    words=")" +
         commands + R"(--help --version"
  elif [ -z "$words" ]; then
    case $word in -*) words=$options ;; esac
  fi
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _vrk vrk
)";
}

std::string for_zsh(const CLI::App& app) {
  const auto quoted = [](const std::string& text) {
    return replaced(text, {{'\'', "'\\''"}, {'[', "\\["}, {']', "\\]"}, {':', "\\:"}, {'\\', "\\\\"}});
  };
  std::string commands, cases;
  for (const CLI::App* const command : shown_commands(app)) {
    commands += "      '" + command->get_name() + ":" + quoted(command->get_description()) + "'\n";
    cases += "    " + command->get_name() + ")\n      _arguments -s";
    for (const CLI::Option* const option : shown_options(*command)) {
      const option_facts facts = facts_of(*option);
      std::string value;
      if (!facts.type.empty()) {
        value = ":" + quoted(facts.type) + ":" +
                (!facts.words.empty() ? "(" + words_of(facts) + ")"
                 : facts.is_file()    ? "_files"
                                      : " ");
      }
      for (const std::string& name : names_of(*option)) {
        cases += " \\\n        '" + name + "[" + quoted(option->get_description()) + "]" + value + "'";
      }
    }
    cases += " \\\n        '*:file:_files' ;;\n";
  }
  return "#compdef vrk\n# Completion of vrk for zsh.\n_vrk() {\n  if (( CURRENT == 2 )); then\n    local -a "
         "commands=(\n" +
         commands + "    )\n    _describe command commands\n    return\n  fi\n  local command=$words[2]\n" +
         "  shift words\n  (( CURRENT-- ))\n  case $command in\n" + cases + "  esac\n}\n" +
         "if [[ $funcstack[1] == _vrk ]]; then _vrk \"$@\"; else compdef _vrk vrk; fi\n";
}

std::string for_fish(const CLI::App& app) {
  const auto quoted = [](const std::string& text) {
    return "'" + replaced(text, {{'\'', "\\'"}, {'\\', "\\\\"}}) + "'";
  };
  std::string script = "# Completion of vrk for fish.\n";
  for (const CLI::App* const command : shown_commands(app)) {
    script += "complete -c vrk -f -n __fish_use_subcommand -a " + command->get_name() + " -d " +
              quoted(command->get_description()) + "\n";
    for (const CLI::Option* const option : shown_options(*command)) {
      const option_facts facts = facts_of(*option);
      script += "complete -c vrk -n '__fish_seen_subcommand_from " + command->get_name() + "'";
      for (const std::string& name : names_of(*option)) {
        script += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!facts.words.empty())
        script += " -x -a " + quoted(words_of(facts));
      else if (!facts.type.empty())
        script += facts.is_file() ? " -r" : " -x";
      script += " -d " + quoted(option->get_description()) + "\n";
    }
  }
  return script;
}

}  // namespace

void add_completion_command(CLI::App& app) {
  const std::map<std::string, std::function<std::string(const CLI::App&)>> scripts{
      {"bash", for_bash}, {"zsh", for_zsh}, {"fish", for_fish}};
  CLI::App* const command = app.add_subcommand("completion", "Writes a completion script for a shell")->group("");
  const auto shell = std::make_shared<std::string>();
  command->add_option("shell", *shell, "bash, zsh or fish")->check(CLI::IsMember(scripts))->required();
  command->callback([&app, scripts, shell] { std::fputs(scripts.at(*shell)(app).c_str(), stdout); });
}

}  // namespace vrk::tool
