#include "tools/AnalyzerProcess.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "tools/TestAudioFiles.h"

namespace ostrel::testing {

namespace {

std::string readAll(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A raw terminal passes bytes through unchanged, so the test sees exactly what was written.
struct PseudoTerminal {
    int controller = -1;
    int device = -1;

    PseudoTerminal()
    {
        controller = posix_openpt(O_RDWR | O_NOCTTY);
        if (controller < 0 || grantpt(controller) != 0 || unlockpt(controller) != 0)
            throw std::runtime_error("no pseudo-terminal");
        device = ::open(ptsname(controller), O_RDWR | O_NOCTTY);
        if (device < 0) throw std::runtime_error("cannot open the pseudo-terminal");
        termios settings {};
        tcgetattr(device, &settings);
        cfmakeraw(&settings);
        tcsetattr(device, TCSANOW, &settings);
    }
    ~PseudoTerminal()
    {
        if (device >= 0) ::close(device);
        if (controller >= 0) ::close(controller);
    }
};

} // namespace

AnalyzerRun runAnalyzer(
    const std::vector<std::string>& arguments, const AnalyzerRunOptions& options)
{
    static int runNumber = 0;
    ++runNumber;
    const auto outPath = fixturePath("run" + std::to_string(runNumber) + ".out");
    const auto errPath = fixturePath("run" + std::to_string(runNumber) + ".err");
    const std::string inPath
        = options.standardInput ? options.standardInput->string() : "/dev/null";

    std::optional<PseudoTerminal> terminal;
    if (options.standardErrorOnTerminal) terminal.emplace();

    std::vector<std::string> argv {OSTREL_ANALYZE_PATH};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (auto& argument : argv)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) {
        const int in = ::open(inPath.c_str(), O_RDONLY);
        const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int err = terminal ? terminal->device
                                 : ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (in < 0 || out < 0 || err < 0) _exit(126);
        dup2(in, STDIN_FILENO);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        if (terminal) ::close(terminal->controller);
        execv(pointers[0], pointers.data());
        _exit(127);
    }

    AnalyzerRun run;
    if (terminal) {
        // Read while the child runs, or a full terminal buffer would stall it. Reading ends with
        // EIO once the child, the last holder of the device, has gone.
        ::close(terminal->device);
        terminal->device = -1;
        char buffer[4096];
        for (;;) {
            const ssize_t count = ::read(terminal->controller, buffer, sizeof buffer);
            if (count > 0) {
                run.err.append(buffer, static_cast<std::size_t>(count));
            } else if (count < 0 && errno == EINTR) {
                continue;
            } else {
                break;
            }
        }
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = readAll(outPath);
    if (!terminal) run.err = readAll(errPath);
    return run;
}

} // namespace ostrel::testing
