#include <QMap>

#include "tests/host/windows/ChildHost.h"

// pluginInstance() in the kind of host that it is meant for.

namespace {

class PluginHost : public ChildHost {
protected:
    void SetUp() override {
        start(QStringLiteral(PLUGIN_HOST), {QStringLiteral(PLUGIN_FILE)});
        for (QString line = readLine(); !line.isEmpty(); line = readLine()) {
            m_facts[line.section(QLatin1String(": "), 0, 0)] = line.section(QLatin1String(": "), 1).toInt();
        }
    }

    /// -1 when the host did not get that far.
    int fact(const char* name) const { return m_facts.value(QString::fromLatin1(name), -1); }

private:
    QMap<QString, int> m_facts;
};

}  // namespace

TEST_F(PluginHost, EndsCleanlyWithThePlugInLoaded) {
    EXPECT_TRUE(endsWell());
}

TEST_F(PluginHost, GetsOneApplication) {
    EXPECT_EQ(fact("made"), 1);
    EXPECT_EQ(fact("made again"), 0);
}

TEST_F(PluginHost, DeliversPostedEventsWithItsMessages) {
    EXPECT_EQ(fact("delivered before a message"), 0);
    EXPECT_EQ(fact("delivered with a message"), 1);
    EXPECT_EQ(fact("delivered twice"), 0);
}

TEST_F(PluginHost, DeliversPostedEventsInAModalLoop) {
    EXPECT_EQ(fact("delivered in the modal loop"), 1);
}

TEST_F(PluginHost, HoldsBackDeferredDeletesUntilTheModalLoopHasEnded) {
    EXPECT_EQ(fact("object lives at the modal loop's end"), 1);
    EXPECT_EQ(fact("object lives afterwards"), 0);
}

TEST_F(PluginHost, KeepsThePlugInLoadedAndServedAfterFreeLibrary) {
    EXPECT_EQ(fact("mapped when freed"), 1);
    EXPECT_EQ(fact("delivered when freed"), 1);
}
