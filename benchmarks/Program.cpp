#include "Program.h"

#include "Fail.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace wakeloft {

namespace {

constexpr auto patience = std::chrono::seconds(5);
constexpr auto pause = std::chrono::milliseconds(1);

bool ends(pid_t process) {
    const auto end = Clock::now() + patience;
    while (waitpid(process, nullptr, WNOHANG) == 0) {
        if (Clock::now() > end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

/// The file of a socket is there a moment before anybody listens.
bool listensAt(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        fail("Cannot make a socket.");
    const int result = connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(descriptor);
    return result == 0;
}

std::string privateDesktop() {
    if (const char* folder = std::getenv("WAKELOFT_RIG_DESKTOP"))
        return folder;
    std::fputs("bench: run this with the command `bench`, as it needs a private desktop.\n", stderr);
    std::exit(2);
}

} // namespace

Program::Program(const std::vector<std::string>& command, const Environment& changes)
    : name_(command.front()), start_(Clock::now()) {
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ < 0)
        fail("Cannot start " + name_ + ".");
    if (id_ > 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE);
    if (const int log = open(programsLog().c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600); log >= 0) {
        dup2(log, STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
        close(log);
    }
    for (const auto& [variable, value] : changes)
        setenv(variable.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str())); // execvp does not change them
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    std::perror(name_.c_str());
    _exit(EXIT_FAILURE);
}

Program::~Program() {
    kill(id_, SIGTERM);
    if (ends(id_))
        return;
    std::fprintf(stderr, "bench: %s does not end when asked to.\n", name_.c_str());
    kill(id_, SIGKILL);
    ends(id_);
}

void Program::requireRunning() const {
    if (waitpid(id_, nullptr, WNOHANG) != 0)
        fail(name_ + " ended while it was measured.");
}

SessionBus::SessionBus()
    : folder_(makeFolder()),
      address_("unix:path=" + (folder_ / "bus").string()),
      daemon_({"dbus-daemon", "--session", "--address=" + address_, "--nofork", "--nopidfile"}) {
    const auto end = Clock::now() + patience;
    while (!listensAt(folder_ / "bus")) {
        daemon_.requireRunning();
        if (Clock::now() > end)
            fail("A session bus does not start.");
        std::this_thread::sleep_for(pause);
    }
}

Program::Environment SessionBus::environment() const {
    return {{"DBUS_SESSION_BUS_ADDRESS", address_}, {"XDG_CONFIG_HOME", (folder_ / "config").string()}};
}

void fail(const std::string& sentence) {
    std::fprintf(stderr, "bench: %s\n", sentence.c_str());
    std::ifstream log(programsLog());
    for (std::string line; std::getline(log, line);)
        std::fprintf(stderr, "    %s\n", line.c_str());
    std::exit(2);
}

std::filesystem::path programsLog() {
    return std::filesystem::path(privateDesktop()) / "bench.log";
}

std::filesystem::path makeFolder() {
    std::string name = privateDesktop() + "/bench.XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        fail("Cannot make a folder in " + privateDesktop() + ".");
    return name;
}

} // namespace wakeloft
