#include "AppTest.h"

#include "app/CommandLine.h"
#include "app/RunningInstance.h"

#include <filesystem>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace tidemark::test {

namespace {

CommandLine lineOf(const QList<QByteArray> &arguments)
{
    return CommandLine::parsed(arguments, FilePath("/here"));
}

/// A socket of somebody who isn't this program.
int connectedTo(const QByteArray &path)
{
    sockaddr_un address = {AF_UNIX, {}};
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    return socket;
}

TEST(CommandLine, TakesTextsAndPaths)
{
    const CommandLine line = lineOf({"--find", "--x", "a b", "--replace=", "-style", "fusion", "--regex",
                                     "./c//d/", "--", "--find", "/e/\xFF"});
    EXPECT_EQ(line.wish, CommandLine::Wish::Window);
    const LaunchRequest &request = line.request;
    EXPECT_EQ(request.findText, u"--x"_s);
    EXPECT_EQ(request.replaceText, u""_s);
    EXPECT_TRUE(request.isRegularExpression);
    EXPECT_EQ(request.paths, QList<FilePath>({FilePath("/here/a b"), FilePath("/here/c/d"),
                                              FilePath("/here/--find"), FilePath("/e/\xFF")}));
    EXPECT_EQ(LaunchRequest::decoded(request.encoded()), request);
    EXPECT_EQ(LaunchRequest::decoded(LaunchRequest().encoded()), LaunchRequest());
    for (const QByteArray &damaged :
         {QByteArray(), request.encoded().chopped(1), request.encoded() + "x", QByteArray("GET / HTTP/1.1")})
        EXPECT_FALSE(LaunchRequest::decoded(damaged).has_value());
}

TEST(CommandLine, LeadsToWhereALinkLeads)
{
    const TemporaryFolder folder;
    folder.makeFolder("real");
    std::filesystem::create_directory_symlink("real", folder.path("link").cString());
    const FilePath real(
        QByteArray::fromStdString(std::filesystem::canonical(folder.path("real").cString()).native()));
    for (const char *path : {"link", "link/", "real/../link", "./real/."})
        EXPECT_EQ(CommandLine::parsed({path}, folder.path()).request.paths, QList<FilePath>({real})) << path;
}

TEST(CommandLine, TellsWhatIsWrongInOneLine)
{
    const QList<QList<QByteArray>> wrong = {{"--find"}, {"--replace", "\xFF"}, {"--fnd", "x"}, {"-x"},
                                            {""},       {"--find=\xC0"}};
    for (const auto &arguments : wrong) {
        const CommandLine line = lineOf(arguments);
        EXPECT_EQ(line.wish, CommandLine::Wish::WrongUsage) << arguments[0].toStdString();
        EXPECT_FALSE(line.problem.isEmpty() || line.problem.contains('\n'));
    }
    EXPECT_EQ(lineOf({"--version", "--fnd"}).wish, CommandLine::Wish::Version);
    EXPECT_EQ(lineOf({"x", "--help"}).wish, CommandLine::Wish::Help);
    EXPECT_EQ(lineOf({"-"}).wish, CommandLine::Wish::Window);
}

TEST_F(AppTest, ARunningProgramOpensTheWindowOfASecondOne)
{
    const QString name = folder.path("socket").displayText();
    // Left by one that was ended hard.
    folder.write("socket", "");
    const RunningInstance running(name, {});
    EXPECT_FALSE(running.hasHandedOver());
    QObject::connect(&running, &RunningInstance::requested, &controller,
                     &TDApplicationController::openDocument);
    const int stranger = connectedTo(folder.path("socket").bytes());
    ASSERT_EQ(::write(stranger, "\xFF\xFF\xFF\xFF no", 7), 7);
    LaunchRequest request;
    request.findText = u"text"_s;
    request.paths = {folder.path(), folder.path("gone")};
    // The second program is another process; here it is another thread.
    bool isTaken = false;
    std::thread second([&] { isTaken = RunningInstance(name, request).hasHandedOver(); });
    EXPECT_TRUE(waitFor([this] { return controller.documents().size() == 1; }));
    second.join();
    (void)::close(stranger);
    EXPECT_TRUE(isTaken);
    const WindowedDocument &document = *controller.documents().value(0);
    EXPECT_EQ(document.findText(), u"text"_s);
    ASSERT_EQ(document.searchLocations().size(), 2);
    EXPECT_TRUE(document.searchLocations()[0].isFolder);
}

TEST_F(AppTest, ARunningProgramThatDoesNotAnswerKeepsItsSocketAndForgets)
{
    const QString name = folder.path("socket").displayText();
    const RunningInstance running(name, {});
    int requests = 0;
    QObject::connect(&running, &RunningInstance::requested, &controller, [&requests] { ++requests; });
    // It is busy: its event loop doesn't run.
    EXPECT_FALSE(RunningInstance(name, {}, std::chrono::milliseconds(20)).hasHandedOver());
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
    EXPECT_EQ(requests, 0);
    bool isTaken = false;
    std::thread second([&] { isTaken = RunningInstance(name, {}).hasHandedOver(); });
    EXPECT_TRUE(waitFor([&requests] { return requests == 1; }));
    second.join();
    EXPECT_TRUE(isTaken);
}

} // namespace

} // namespace tidemark::test
