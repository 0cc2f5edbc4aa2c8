#pragma once
// Running the built vellum program and other commands from a test, and a small JSON reader for
// what `--json` prints.

#include <array>
#include <cctype>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace VellumToolTest
{
struct CommandRun
{
    int status;
    std::string out;
};

// Runs a shell command and gives its exit status and standard output (and error, when the
// command says 2>&1).
inline CommandRun runCommand(std::string const & command)
{
    CommandRun run{-1, std::string()};
    FILE * pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    std::array<char, 65536> buffer;
    size_t got;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) != 0)
        run.out.append(buffer.data(), got);
    int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

inline CommandRun runVellum(std::string const & arguments)
{
    return runCommand(std::string(VELLUM_TOOL_PATH) + " " + arguments);
}

inline std::string shellQuoted(std::string const & path) { return "'" + path + "'"; }

inline bool haveCommand(std::string const & name)
{
    return runCommand("command -v " + name + " >/dev/null 2>&1").status == 0;
}

// A parsed JSON value. Numbers keep their text.
struct Json
{
    enum Type
    {
        Null,
        Bool,
        Number,
        String,
        Array,
        Object
    } type = Null;
    std::string text;
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> members;

    Json const & operator[](std::string const & name) const
    {
        static Json const none;
        for (auto const & m : members)
            if (m.first == name)
                return m.second;
        return none;
    }
    Json const & operator[](size_t i) const
    {
        static Json const none;
        return i < items.size() ? items[i] : none;
    }
    bool isNull() const { return type == Null; }
    long long number() const { return std::stoll(text); }
};

class JsonParser
{
public:
    explicit JsonParser(std::string const & text) : s_(text), at_(0) {}

    // False when the text is not one complete JSON value.
    bool parse(Json & out)
    {
        if (!value(out))
            return false;
        space();
        return at_ == s_.size();
    }

private:
    void space()
    {
        while (at_ < s_.size() && (s_[at_] == ' ' || s_[at_] == '\n' || s_[at_] == '\r' || s_[at_] == '\t'))
            ++at_;
    }
    bool literal(char const * word)
    {
        std::string w(word);
        if (s_.compare(at_, w.size(), w) != 0)
            return false;
        at_ += w.size();
        return true;
    }
    bool string(std::string & out)
    {
        if (at_ >= s_.size() || s_[at_] != '"')
            return false;
        ++at_;
        while (at_ < s_.size() && s_[at_] != '"')
        {
            char c = s_[at_++];
            if (c == '\\' && at_ < s_.size())
            {
                char e = s_[at_++];
                if (e == 'n')
                    out += '\n';
                else if (e == 't')
                    out += '\t';
                else if (e == 'r')
                    out += '\r';
                else if (e == 'u' && at_ + 4 <= s_.size())
                {
                    out += char(std::stoi(s_.substr(at_, 4), nullptr, 16));
                    at_ += 4;
                }
                else
                    out += e;
            }
            else
                out += c;
        }
        if (at_ >= s_.size())
            return false;
        ++at_;
        return true;
    }
    bool value(Json & out)
    {
        space();
        if (at_ >= s_.size())
            return false;
        char c = s_[at_];
        if (c == '{')
        {
            out.type = Json::Object;
            ++at_;
            space();
            if (at_ < s_.size() && s_[at_] == '}')
                return ++at_, true;
            for (;;)
            {
                space();
                std::string name;
                if (!string(name))
                    return false;
                space();
                if (at_ >= s_.size() || s_[at_++] != ':')
                    return false;
                Json member;
                if (!value(member))
                    return false;
                out.members.push_back(std::make_pair(name, member));
                space();
                if (at_ < s_.size() && s_[at_] == ',')
                {
                    ++at_;
                    continue;
                }
                return at_ < s_.size() && s_[at_++] == '}';
            }
        }
        if (c == '[')
        {
            out.type = Json::Array;
            ++at_;
            space();
            if (at_ < s_.size() && s_[at_] == ']')
                return ++at_, true;
            for (;;)
            {
                Json item;
                if (!value(item))
                    return false;
                out.items.push_back(item);
                space();
                if (at_ < s_.size() && s_[at_] == ',')
                {
                    ++at_;
                    continue;
                }
                return at_ < s_.size() && s_[at_++] == ']';
            }
        }
        if (c == '"')
        {
            out.type = Json::String;
            return string(out.text);
        }
        if (literal("null"))
            return out.type = Json::Null, true;
        if (literal("true"))
            return out.type = Json::Bool, out.text = "true", true;
        if (literal("false"))
            return out.type = Json::Bool, out.text = "false", true;
        size_t start = at_;
        while (at_ < s_.size() && (std::isdigit(static_cast<unsigned char>(s_[at_])) || s_[at_] == '-' ||
                                   s_[at_] == '+' || s_[at_] == '.' || s_[at_] == 'e' || s_[at_] == 'E'))
            ++at_;
        if (start == at_)
            return false;
        out.type = Json::Number;
        out.text = s_.substr(start, at_ - start);
        return true;
    }

    std::string const & s_;
    size_t at_;
};
} // namespace VellumToolTest
