#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "service/Options.h"

namespace zentri::service {
namespace {

std::optional<Options> parse(std::vector<const char*> arguments, std::string* printed = nullptr) {
    arguments.insert(arguments.begin(), "zentri-service");
    std::ostringstream out;
    const auto options = parseOptions(static_cast<int>(arguments.size()), arguments.data(), out);
    if (printed != nullptr) {
        *printed = out.str();
    }
    return options;
}

std::string errorOf(const std::vector<const char*>& arguments) {
    try {
        parse(arguments);
    } catch (const OptionsError& error) {
        return error.what();
    }
    return {};
}

TEST(Options, HasSensibleDefaults) {
    const Options options = *parse({});
    EXPECT_EQ(options.host, "127.0.0.1");
    EXPECT_EQ(options.port, 8090);
    EXPECT_EQ(options.database, "zentri-service.sqlite");
    EXPECT_GE(options.threads, 32);
    EXPECT_FALSE(options.allowFaults);
    EXPECT_TRUE(options.upstreamUrl.empty());
    EXPECT_FALSE(options.ask.has_value());
}

TEST(Options, ReadsEveryOption) {
    const Options options = *parse({"--listen",
                                    "0.0.0.0:0",
                                    "--database",
                                    "d",
                                    "--knowledge",
                                    "k",
                                    "--upstream",
                                    "https://h/v1",
                                    "--upstream-model",
                                    "m",
                                    "--upstream-timeout",
                                    "5",
                                    "--seed",
                                    "demo",
                                    "--seed-token",
                                    "t",
                                    "--seed-sessions",
                                    "7",
                                    "--delay",
                                    "0",
                                    "--piece",
                                    "9",
                                    "--fault",
                                    "chat:crlf",
                                    "--fault",
                                    "list:code=5",
                                    "--allow-faults",
                                    "--threads",
                                    "3",
                                    "--verbose",
                                    "--ask",
                                    "q"});
    EXPECT_EQ(options.host, "0.0.0.0");
    EXPECT_EQ(options.port, 0);
    EXPECT_EQ(options.database, "d");
    EXPECT_EQ(options.knowledgeDirectory, "k");
    EXPECT_EQ(options.upstreamUrl, "https://h/v1");
    EXPECT_EQ(options.upstreamModel, "m");
    EXPECT_EQ(options.upstreamTimeoutSeconds, 5);
    EXPECT_EQ(options.seed, "demo");
    EXPECT_EQ(options.seedToken, "t");
    EXPECT_EQ(options.seedSessions, 7);
    EXPECT_EQ(options.delayMs, 0);
    EXPECT_EQ(options.piece, 9);
    ASSERT_EQ(options.faults.size(), 2U);
    EXPECT_EQ(options.faults[1].call, Call::List);
    EXPECT_TRUE(options.allowFaults);
    EXPECT_EQ(options.threads, 3);
    EXPECT_TRUE(options.verbose);
    EXPECT_EQ(options.ask, "q");
}

TEST(Options, AcceptsIpv6ListenAddresses) {
    const Options options = *parse({"--listen", "[::1]:8091"});
    EXPECT_EQ(options.host, "::1");
    EXPECT_EQ(options.port, 8091);
}

TEST(Options, ReadsTheUpstreamKeyFromTheEnvironmentOnly) {
    setenv("ZENTRI_UPSTREAM_KEY", "secret", 1);
    EXPECT_EQ(parse({})->upstreamKey, "secret");
    unsetenv("ZENTRI_UPSTREAM_KEY");
    EXPECT_EQ(parse({})->upstreamKey, "");
    EXPECT_FALSE(errorOf({"--upstream-key", "x"}).empty());
}

TEST(Options, RejectsInvalidOptions) {
    for (const char* address : {"127.0.0.1", "127.0.0.1:", ":8090", "127.0.0.1:65536", "127.0.0.1:80x",
                                "::1:80", "", "127.0.0.1:-1", "127.0.0.1:999999"}) {
        EXPECT_EQ(errorOf({"--listen", address}),
                  std::string("--listen needs HOST:PORT, not '") + address + "'");
    }
    EXPECT_NE(errorOf({"--nonsense"}).find("--nonsense"), std::string::npos);
    EXPECT_FALSE(errorOf({"stray"}).empty());
    EXPECT_FALSE(errorOf({"--threads", "0"}).empty());
    EXPECT_FALSE(errorOf({"--threads", "many"}).empty());
    EXPECT_FALSE(errorOf({"--piece", "0"}).empty());
    EXPECT_FALSE(errorOf({"--delay", "-1"}).empty());
    EXPECT_FALSE(errorOf({"--database"}).empty());
    EXPECT_FALSE(errorOf({"--upstream-model", "m"}).empty());
    for (const char* option :
         {"--database", "--knowledge", "--upstream", "--upstream-model", "--seed", "--seed-token"}) {
        EXPECT_EQ(errorOf({"--upstream", "http://x", option, ""}),
                  std::string(option) + ": must not be empty");
    }
    EXPECT_NE(errorOf({"--fault", "chat:nonsense"}).find("nonsense"), std::string::npos);
    EXPECT_NE(errorOf({"--upstream", "ftp://x"}).find("http://"), std::string::npos);
    EXPECT_FALSE(errorOf({"--upstream", "http://x", "--upstream-ca", "/no/such/file"}).empty());
}

TEST(Options, ErrorMessagesAreOneLine) {
    for (const std::vector<const char*>& arguments :
         {std::vector<const char*>{"--listen"}, {"--threads", "x\ny"}, {"a", "b", "c"}}) {
        EXPECT_EQ(errorOf(arguments).find('\n'), std::string::npos);
    }
}

TEST(Options, HelpListsEveryOption) {
    std::string help;
    EXPECT_FALSE(parse({"--help"}, &help).has_value());
    for (const char* option : {"--help",
                               "--version",
                               "--listen",
                               "--database",
                               "--knowledge",
                               "--upstream ",
                               "--upstream-model",
                               "--upstream-timeout",
                               "--upstream-ca",
                               "--seed ",
                               "--seed-token",
                               "--seed-sessions",
                               "--delay",
                               "--piece",
                               "--fault ",
                               "--allow-faults",
                               "--threads",
                               "--verbose",
                               "--ask",
                               "ZENTRI_UPSTREAM_KEY",
                               "never-ending"}) {
        EXPECT_NE(help.find(option), std::string::npos) << option;
    }
}

TEST(Options, PrintsItsVersion) {
    std::string text;
    EXPECT_FALSE(parse({"--version"}, &text).has_value());
    EXPECT_EQ(text.substr(0, 15), "zentri-service ");
}

}  // namespace
}  // namespace zentri::service
