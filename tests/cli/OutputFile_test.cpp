// `read -o`: signals while the file is written, and the paths it may or may not be written through.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include "cli/support/run_cli.hpp"

extern char** environ;

namespace {

using tolven::testing::CliRun;
using tolven::testing::fresh_folder;
using tolven::testing::run_cli;
using tolven::testing::slurp;
namespace fs = std::filesystem;

std::string quote(const std::string& s) { return "'" + s + "'"; }

std::string rows(int n) {
    std::string xml;
    for (int i = 0; i < n; ++i) xml += "<r><a>" + std::to_string(i) + "</a><b>x</b></r>\n";
    return xml;
}

// Runs `sh -c script` in folder, without core files, and returns its status once it ends.
class Shell {
public:
    Shell(const fs::path& folder, const std::string& script) {
        const std::string line = "cd " + quote(folder.string()) + " && ulimit -c 0 && " + script;
        const char* argv[] = {"/bin/sh", "-c", line.c_str(), nullptr};
        EXPECT_EQ(::posix_spawn(&pid_, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ), 0);
    }
    pid_t pid() const { return pid_; }
    int wait() {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        return status;
    }

private:
    pid_t pid_ = -1;
};

// Names in folder that are output: the file or a temporary file beside it.
int outputs_in(const fs::path& folder, const std::string& output = "out.csv") {
    int n = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        n += entry.path().filename().string().find(output) != std::string::npos;
    return n;
}

// `read - -o out.csv` (or another output) fed through a pipe, held mid-document once its file exists.
struct ReadFromPipe {
    fs::path folder = fresh_folder();
    int writer = -1;
    std::optional<Shell> shell;

    explicit ReadFromPipe(const std::string& before = "", const std::string& output = "out.csv",
                          const std::string& format = "csv") {
        const fs::path fifo = folder / "in";
        EXPECT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
        shell.emplace(folder, before + "exec " + quote(TOLVEN_CLI_PATH) + " read - --stream --sample-bytes 4KiB -o " +
                                  output + " --format " + format + " <in 2>/dev/null");
        writer = ::open(fifo.c_str(), O_WRONLY | O_CLOEXEC);  // once the command opens it
        send("<t>" + rows(400));
        for (int i = 0; i < 3000 && outputs_in(folder, output) == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_GE(outputs_in(folder, output), 1);
    }
    void send(const std::string& text) { EXPECT_EQ(::write(writer, text.data(), text.size()), ssize_t(text.size())); }
    int finish() {
        ::close(writer);
        return shell->wait();
    }
};

TEST(OutputFile, EveryTerminatingSignalRemovesTheTemporaryFileButIgnoredOnesStayIgnored) {
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGQUIT, SIGPIPE, SIGXFSZ, SIGALRM, SIGUSR1, SIGXCPU}) {
        ReadFromPipe run;
        ::kill(run.shell->pid(), signal);
        const int status = run.finish();
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << strsignal(signal) << " " << status;
        EXPECT_EQ(outputs_in(run.folder), 0) << strsignal(signal);
    }
    // A database the run created goes too, with its journal.
    ReadFromPipe database("", "out.db", "sqlite");
    ::kill(database.shell->pid(), SIGTERM);
    const int database_status = database.finish();
    EXPECT_TRUE(WIFSIGNALED(database_status) && WTERMSIG(database_status) == SIGTERM) << database_status;
    EXPECT_EQ(outputs_in(database.folder, "out.db"), 0);

    // Under nohup SIGHUP stays ignored: the command finishes and writes the file.
    ReadFromPipe run("trap '' HUP; ");
    ::kill(run.shell->pid(), SIGHUP);
    run.send(rows(10) + "</t>\n");
    const int status = run.finish();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(slurp((run.folder / "out.csv").string()).substr(0, 9), "a,b\n0,x\n1");

    // A file size limit met on writing (SIGXFSZ from the kernel) leaves nothing behind either.
    const fs::path folder = fresh_folder();
    std::ofstream(folder / "big.xml") << "<t>" << rows(2000) << "</t>";
    Shell limited(folder, "ulimit -f 1 && exec " + quote(TOLVEN_CLI_PATH) + " read big.xml -o out.csv 2>/dev/null");
    const int limited_status = limited.wait();
    EXPECT_TRUE(WIFSIGNALED(limited_status) && WTERMSIG(limited_status) == SIGXFSZ) << limited_status;
    EXPECT_EQ(outputs_in(folder), 0);
}

TEST(OutputFile, LinksThatAreDanglingLoopingOrPlantedByAnotherUserAreRefused) {
    const fs::path folder = fresh_folder();
    const fs::path shared = folder / "shared";  // like /tmp: sticky and world-writable
    fs::create_directory(shared);
    fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
    fs::create_symlink(folder / "nowhere.csv", folder / "dangling.csv");
    fs::create_symlink(folder / "loop-b.csv", folder / "loop-a.csv");
    fs::create_symlink(folder / "loop-a.csv", folder / "loop-b.csv");
    std::ofstream(folder / "target.csv") << "old\n";
    fs::create_symlink(folder / "target.csv", shared / "planted.csv");
    fs::create_symlink(folder / "target.csv", shared / "mine.csv");
    const bool root = ::geteuid() == 0;
    // Only root can give a link away; the planted link then belongs to neither root nor the folder's owner.
    if (root) {
        ASSERT_EQ(::lchown((shared / "planted.csv").c_str(), 65534, 65534), 0);
    }

    struct Case {
        fs::path path;
        std::string reason;
    };
    for (const Case& c : {Case{folder / "dangling.csv", "leads to '" + (folder / "nowhere.csv").string() + "', which does not exist"},
                          Case{folder / "loop-a.csv", "form a loop"},
                          Case{shared / "planted.csv", root ? "belongs to another user" : ""}}) {
        if (c.reason.empty()) continue;
        const CliRun run = run_cli("read examples/key-value.xml -o " + quote(c.path.string()));
        EXPECT_EQ(run.exit_code, 1) << c.path;
        EXPECT_NE(run.err.find("(TOLVEN:import:OutputNotWritable)"), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(c.reason), std::string::npos) << run.err;
    }
    EXPECT_FALSE(fs::exists(folder / "nowhere.csv"));
    EXPECT_EQ(slurp((folder / "target.csv").string()), "old\n");

    // The user's own link there is followed: the file it leads to is replaced, the link kept.
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote((shared / "mine.csv").string())).exit_code, 0);
    EXPECT_TRUE(fs::is_symlink(shared / "mine.csv"));
    EXPECT_EQ(slurp((folder / "target.csv").string()).substr(0, 16), "date,amount,memo");
}

TEST(OutputFile, ReplacedFileKeepsItsPermissionsButNoSpecialBitsAndLongNamesWork) {
    const fs::path folder = fresh_folder();
    const fs::path planted = folder / "planted.csv";
    std::ofstream(planted) << "old\n";
    ASSERT_EQ(::chmod(planted.c_str(), 07755), 0);
    EXPECT_EQ(run_cli("read examples/key-value.xml -o " + quote(planted.string())).exit_code, 0);
    struct stat status {};
    ASSERT_EQ(::stat(planted.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755u);

    // The longest name a folder takes still leaves room for the temporary name.
    const fs::path longest = folder / (std::string(250, 'n') + ".csv");
    const CliRun run = run_cli("read examples/key-value.xml -o " + quote(longest.string()));
    EXPECT_EQ(run.exit_code, 0) << run.err;
    EXPECT_EQ(slurp(longest.string()).substr(0, 16), "date,amount,memo");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);
}

}  // namespace
