#include "support/signature.h"

#include <iomanip>
#include <ios>

#include "support/session_player.h"

namespace orvelin::test {

namespace {

constexpr std::uint64_t fnv_basis = 0xcbf29ce484222325;
constexpr std::uint64_t fnv_prime = 0x100000001b3;

}  // namespace

std::ostream& operator<<(std::ostream& out, signature_t const& signature) {
    return out << signature.nodes << ' ' << std::hex << std::setfill('0') << std::setw(16)
               << signature.hash << std::setfill(' ') << std::dec;
}

session_t play_again(session_t const& session) {
    SessionPlayer player;
    session_t played;
    for (session_command_t const& command : session.commands) {
        played.commands.push_back({command.text, player.play(command.text)});
    }
    return played;
}

std::string session_text(std::vector<session_t> const& sessions) {
    std::string text;
    for (session_t const& session : sessions) {
        for (session_command_t const& command : session.commands) {
            text += "> " + command.text + '\n';
            for (std::string const& line : command.answer) {
                text += line + '\n';
            }
        }
        text += '\n';
    }
    return text;
}

signature_t signature_of(std::vector<session_t> const& sessions) {
    signature_t signature{0, fnv_basis};
    for (session_t const& session : sessions) {
        signature.nodes += session.nodes();
    }
    for (char const letter : session_text(sessions)) {
        signature.hash = (signature.hash ^ static_cast<unsigned char>(letter)) * fnv_prime;
    }
    return signature;
}

}  // namespace orvelin::test
