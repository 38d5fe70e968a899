// How the relay shows a NATS server who it is, and what it reports where the server, or it, refuses.

#include <gtest/gtest.h>

#include "rtdb/volma_rtdb.h"
#include "tests/support/command_runner.h"
#include "tests/support/nats_broker.h"
#include "tests/support/nats_credentials.h"

namespace dtsdb::tools {
namespace {

using dtsdb::test::CredentialsFile;
using dtsdb::test::NatsBroker;
using dtsdb::test::NatsKey;
using test::CommandResult;
using test::Contains;
using test::IsOneLine;
using test::Workplace;

/// A database rtdb:grid and a server beside it.
class SecuredRelay : public testing::Test {
 protected:
  SecuredRelay() {
    here.CopyModel("m");
    std::filesystem::remove(here / "m/ANALOG.csv");
    EXPECT_EQ(here.Run("validate m -o rtdb:grid").code, 0);
  }

  void ChangeDatabase() const {
    dbDatabase database;
    ASSERT_TRUE(database.open((here / "grid").c_str()));
    ld row;
    row.id = "new";
    database.insert(row);
    database.commit();
    database.close();
  }
  void StartBroker(const std::string& settings) {
    broker.Configure(settings);
    broker.Start();
  }
  std::string Url(const std::string& login, const std::string& scheme = "nats") const {
    return scheme + "://" + login + "@" + broker.Place();
  }
  CommandResult Publish(const std::string& url, const std::string& options = "") const {
    return here.Run(("relay publish rtdb:grid --once --to " + url + " " + options).c_str());
  }
  CommandResult Follow(const std::string& url, const std::string& options = "") const {
    return here.Run(("relay follow --once " + url + " rtdb:copy --name grid " + options).c_str());
  }
  /// The database comes to the copy.
  void ExpectCarries(const std::string& url, const std::string& options = "") const {
    const CommandResult sent = Publish(url, options);
    EXPECT_EQ(sent.code, 0) << sent.err;
    const CommandResult followed = Follow(url, options);
    EXPECT_EQ(followed.code, 0) << followed.err;
    EXPECT_EQ(here.Run("diff rtdb:grid rtdb:copy").out, "The models are the same.\n");
  }
  /// Both end with one line: what, where, what to do.
  void ExpectRefused(const std::string& url, const std::string& options, const std::string& message) const {
    for (const CommandResult& result : {Publish(url, options), Follow(url, options)}) {
      EXPECT_EQ(result.code, 3) << url << " " << options;
      EXPECT_EQ(result.out, "");
      EXPECT_TRUE(IsOneLine(result.err) && Contains(result.err, message)) << options << ": " << result.err;
      EXPECT_FALSE(Contains(result.err, "secret")) << result.err;
    }
  }

  Workplace here;
  NatsBroker broker;
};

/// The server has a certificate for 127.0.0.1, and wants one of the same authority.
class RelayOverTls : public SecuredRelay {
 protected:
  RelayOverTls() {
    here.Write("names", "subjectAltName=IP:127.0.0.1\n");
    for (const std::string name : {"ours", "foreign"}) {
      OpenSsl("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=" + name + " -keyout " +
              name + ".key -out " + name + ".pem");
    }
    MakeCertificate("server", "ours");
    MakeCertificate("client", "ours");
    MakeCertificate("stranger", "foreign");
  }

  void OpenSsl(const std::string& arguments) const {
    const CommandResult result =
        here.RunOther(QStringLiteral("openssl"), QString::fromStdString(arguments).split(u' '));
    EXPECT_EQ(result.code, 0) << result.err;
  }
  void MakeCertificate(const std::string& name, const std::string& authority) const {
    OpenSsl("req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=" + name + " -keyout " + name +
            ".key -out request");
    OpenSsl("x509 -req -days 2 -in request -extfile names -CAcreateserial -CA " + authority + ".pem -CAkey " +
            authority + ".key -out " + name + ".pem");
  }
  void StartTlsBroker() {
    const auto path = [this](const char* name) { return "\"" + (here / name).string() + "\""; };
    StartBroker("tls { cert_file: " + path("server.pem") + ", key_file: " + path("server.key") +
                ", ca_file: " + path("ours.pem") + ", verify: true }\n");
  }
  std::string TlsUrl() const { return "tls://" + broker.Place(); }

  static constexpr const char* kGood = "--tls-ca ours.pem --tls-cert client.pem --tls-key client.key";
};

TEST_F(RelayOverTls, CarriesADatabase) {
  StartTlsBroker();
  ExpectCarries(TlsUrl(), kGood);
}

TEST_F(RelayOverTls, RefusesAServerThatItCantTrust) {
  StartTlsBroker();
  const std::string own = "--tls-cert client.pem --tls-key client.key";
  const std::string where = TlsUrl() + ": no TLS with the server (";
  ExpectRefused(TlsUrl(), own + " --tls-ca foreign.pem", where);
  ExpectRefused(TlsUrl(), own, where);
  ExpectRefused(TlsUrl(), own, "check --tls-ca");
  const std::string otherName = "tls://localhost:" + std::to_string(broker.Port());
  ExpectRefused(otherName, kGood, otherName + ": no TLS with the server (");
}

TEST_F(RelayOverTls, ReportsThatTheServerWantsACertificate) {
  StartTlsBroker();
  const std::string message = TlsUrl() + ": the server hangs up";
  ExpectRefused(TlsUrl(), "--tls-ca ours.pem", message);
  ExpectRefused(TlsUrl(), "--tls-ca ours.pem --tls-cert stranger.pem --tls-key stranger.key", message);
  ExpectRefused(TlsUrl(), "--tls-ca ours.pem", "check --tls-cert and --tls-key");
}

TEST_F(RelayOverTls, ReportsFilesThatAreNone) {
  StartTlsBroker();
  here.Write("empty", "");
  ExpectRefused(TlsUrl(), "--tls-ca none.pem", "none.pem: can't be read: No such file or directory");
  ExpectRefused(TlsUrl(), "--tls-ca empty", "empty: is empty");
  ExpectRefused(TlsUrl(), "--tls-ca ours.key", "ours.key: no certificates in PEM");
  ExpectRefused(TlsUrl(), "--tls-ca ours.pem --tls-cert client.pem --tls-key server.key",
                "client.pem: no certificate in PEM with the key of --tls-key");
  ExpectRefused(TlsUrl(), "--creds none.creds", "none.creds: can't be read");
}

TEST_F(RelayOverTls, SendsNoLoginToAServerWithoutIt) {
  StartBroker("authorization { user: grid, password: secret }\n");
  const std::string message = TlsUrl() + ": the server has no TLS";
  ExpectRefused(Url("grid:secret", "tls"), "", message);
  ExpectRefused(Url("grid:secret"), "--tls-ca ours.pem", "the server has no TLS");
}

class RelayLogin : public SecuredRelay {};

TEST_F(RelayLogin, IsAUserWithAPassword) {
  StartBroker("authorization { user: grid, password: \"secret:@,% \" }\n");
  const std::string url = Url("grid:secret%3A%40%2c%25%20");
  ExpectCarries(url);
  for (const std::string wrong : {"grid:secret", "other:secret%3A%40%2c%25%20", "secret"}) {
    ExpectRefused(Url(wrong), "", broker.Url() + ": the server refuses the login (Authorization Violation): check ");
  }
  ExpectRefused(broker.Url(), "", "the server refuses the login");
  EXPECT_TRUE(Contains(here.Run("relay status rtdb:copy").out, "A copy of " + broker.Url() + " grid, "));
}

TEST_F(RelayLogin, IsAToken) {
  StartBroker("authorization { token: \"secret\" }\n");
  ExpectCarries(Url("secret"));
  ExpectRefused(Url("other"), "", broker.Url() + ": the server refuses the login");
  EXPECT_FALSE(Contains(here.Run("relay status rtdb:copy --format json").out, "secret"));
}

TEST_F(RelayLogin, IsAFileOfCredentials) {
  const NatsKey operators(here, 'O', "operator");
  const NatsKey system(here, 'A', "system");
  const NatsKey account(here, 'A', "account");
  const NatsKey user(here, 'U', "user");
  const auto isAccount = [](const std::string& streams) {
    return R"({"type":"account","version":2,"limits":{"subs":-1,"data":-1,"payload":-1,"imports":-1,"exports":-1,)"
           R"("wildcards":true,"conn":-1,"leaf":-1)" +
           streams + "}}";
  };
  constexpr const char* kStreams = R"(,"mem_storage":-1,"disk_storage":-1,"streams":-1,"consumer":-1)";
  constexpr const char* kUser = R"({"type":"user","version":2,"subs":-1,"data":-1,"payload":-1})";
  StartBroker("operator: " + operators.Sign(operators.Name(), R"({"type":"operator","version":2})") +
              "\nresolver: MEMORY\nsystem_account: " + system.Name() + "\nresolver_preload: {\n" + system.Name() +
              ": " + operators.Sign(system.Name(), isAccount("")) + "\n" + account.Name() + ": " +
              operators.Sign(account.Name(), isAccount(kStreams)) + "\n}\n");
  here.Write("user.creds", CredentialsFile(account.Sign(user.Name(), kUser), user.Seed()));
  ExpectCarries(broker.Url(), "--creds user.creds");

  here.Write("foreign.creds", CredentialsFile(operators.Sign(user.Name(), kUser), user.Seed()));
  ExpectRefused(broker.Url(), "--creds foreign.creds", broker.Url() + ": the server refuses the login");
  ExpectRefused(broker.Url(), "", "check the URL's user and password, or --creds");
  here.Write("none.creds", "no credentials\n");
  ExpectRefused(broker.Url(), "--creds none.creds", "none.creds: no NATS credentials");
}

TEST_F(RelayLogin, NeedsTheRightsThatTheGuideLists) {
  const auto ofBoth = [](const std::string& request) {
    return "\"" + request + ".DTSDB_grid\"\n\"" + request + ".DTSDB_grid_SNAPSHOTS\"\n";
  };
  const std::string reads =
      ofBoth("$JS.API.STREAM.INFO") + ofBoth("$JS.API.STREAM.MSG.GET") + ofBoth("$JS.API.DIRECT.GET");
  const std::string writes = "\"dtsdb.grid.>\"\n" + ofBoth("$JS.API.STREAM.CREATE") + ofBoth("$JS.API.STREAM.UPDATE") +
                             ofBoth("$JS.API.STREAM.PURGE");
  const auto user = [](const std::string& name, const std::string& rights) {
    return "{ user: " + name + ", password: secret, permissions: { subscribe: [\"dtsdb.grid.live.>\", \"_INBOX.>\"], " +
           "publish: [\n" + rights + "] } }\n";
  };
  StartBroker("authorization { users: [\n" + user("publisher", reads + writes) + user("follower", reads) + "] }\n");
  EXPECT_EQ(Publish(Url("publisher:secret")).code, 0);
  const CommandResult followed = Follow(Url("follower:secret"));
  EXPECT_EQ(followed.code, 0) << followed.err;
  const CommandResult refused = Publish(Url("follower:secret"));
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(IsOneLine(refused.err) && Contains(refused.err, broker.Url() + ": Permissions Violation")) << refused.err;
  EXPECT_TRUE(Contains(refused.err, "give the user this right")) << refused.err;
}

/// dtsdb relay publish in a process of its own.
class RunningPublisher {
 public:
  RunningPublisher(const Workplace& here, const std::string& url) {
    m_process.setWorkingDirectory(QString::fromStdString(here.Path().string()));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QString::fromUtf8(dtsdb::test::TestProgram()),
                    {QStringLiteral("relay"), QStringLiteral("publish"), QStringLiteral("rtdb:grid"),
                     QStringLiteral("--to"), QString::fromStdString(url)});
  }
  RunningPublisher(const RunningPublisher&) = delete;
  RunningPublisher& operator=(const RunningPublisher&) = delete;
  ~RunningPublisher() {
    m_process.kill();
    m_process.waitForFinished();
  }

  /// Waits for a line with this text; false when none comes within a minute.
  bool Writes(const std::string& text) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (std::chrono::steady_clock::now() < end) {
      if (!m_process.canReadLine()) m_process.waitForReadyRead(1000);
      m_line = m_process.readLine().toStdString();
      if (Contains(m_line, text)) return true;
    }
    return false;
  }

 private:
  QProcess m_process;
  std::string m_line;
};

TEST_F(RelayLogin, IsTriedAgainWhenTheServerHasRefusedItForAWhile) {
  StartBroker("authorization { user: grid, password: secret }\n");
  RunningPublisher publisher(here, Url("grid:secret"));
  ASSERT_TRUE(publisher.Writes("begun anew"));
  broker.Program().Stop();
  StartBroker("authorization { user: grid, password: another }\n");
  ASSERT_TRUE(publisher.Writes(broker.Url() + ": the server refuses the login"));
  broker.Program().Stop();
  StartBroker("authorization { user: grid, password: secret }\n");
  ChangeDatabase();
  EXPECT_TRUE(publisher.Writes("commit 1: 1 row"));
}

}  // namespace
}  // namespace dtsdb::tools
