#include "PureMVC/Facade.h"
#include "PureMVC/MacroCommand.h"
#include "PureMVC/SimpleCommand.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace PureMVC;

namespace
{
constexpr int kNote = 10;
constexpr int kOther = 11;

std::vector<std::string> journal;

/** Records what happens to it in the journal, under its label. */
class Recorder : public Mediator
{
public:
    Recorder(int name, std::string label, juce::Array<int> interests = {kNote})
        : Mediator(name), m_label(std::move(label)), m_interests(std::move(interests))
    {
    }
    ~Recorder() override { journal.push_back(m_label + " deleted"); }

    juce::Array<int> listNotificationInterests() const override { return m_interests; }
    void handleNotification(const Notification::Ptr& note) override
    {
        journal.push_back(m_label + " got " + juce::String(note->getName()).toStdString());
        if (onNote)
            onNote(*note);
    }
    void onRegister() override { journal.push_back(m_label + " registered in " + getMultitonKey().toStdString()); }
    void onRemove() override { journal.push_back(m_label + " removed"); }

    std::function<void(const Notification&)> onNote;

private:
    std::string m_label;
    juce::Array<int> m_interests;
};

class Store : public Proxy
{
public:
    using Proxy::Proxy;
    ~Store() override { journal.push_back("store deleted"); }
    void onRegister() override { journal.push_back("store registered in " + getMultitonKey().toStdString()); }
    void onRemove() override { journal.push_back("store removed"); }
};

class Text : public juce::ReferenceCountedObject
{
public:
    explicit Text(std::string value) : text(std::move(value)) {}
    std::string text;
};

using Log = std::vector<std::string>;
} // namespace

TEST(FacadeTest, CoresAreIsolatedAndRemovingOneReleasesEverythingInIt)
{
    journal.clear();
    auto radio = Facade::getInstance("radio");
    auto media = Facade::getInstance("media");
    EXPECT_EQ(Facade::getInstance("radio"), radio);
    EXPECT_NE(radio, media);

    EXPECT_TRUE(radio->registerProxy(new Store(1, new Text("101.1"))));
    EXPECT_TRUE(radio->registerMediator(new Recorder(1, "screen")));
    EXPECT_FALSE(radio->registerMediator(new Recorder(1, "twin"))); // the name is taken: refused, released
    EXPECT_EQ(radio->retrieveProxy<Store>(1)->getDataAs<Text>()->text, "101.1");
    EXPECT_EQ(radio->retrieveMediator(1)->getMultitonKey(), "radio");
    EXPECT_FALSE(media->hasProxy(1));
    EXPECT_FALSE(media->hasMediator(1));
    media->sendNotification(kNote); // another core's observers are not this one's
    EXPECT_EQ(journal, (Log{"store registered in radio", "screen registered in radio", "twin deleted"}));

    journal.clear();
    auto kept = radio->retrieveMediator(1); // a reference held outside outlives the core
    Facade::removeCore("radio");
    EXPECT_FALSE(Facade::hasCore("radio"));
    EXPECT_TRUE(Facade::hasCore("media"));
    EXPECT_EQ(journal, (Log{"screen removed", "store removed", "store deleted"}));

    // A detached actor sends nothing and does not bring its core back.
    kept->sendNotification(kNote);
    EXPECT_FALSE(Facade::hasCore("radio"));
    journal.clear();
    kept = nullptr;
    EXPECT_EQ(journal, (Log{"screen deleted"}));

    auto again = Facade::getInstance("radio");
    EXPECT_NE(again, radio);
    EXPECT_FALSE(again->hasProxy(1));
    EXPECT_FALSE(again->hasMediator(1));
}

namespace
{
class AppFacade : public Facade
{
public:
    using Facade::Facade;
    void initializeController() override
    {
        Facade::initializeController();
        registerCommand(kNote, [] { return std::make_unique<SimpleCommand>(); });
    }
};
} // namespace

TEST(FacadeTest, AnApplicationFacadeInitializesItsCoreOnce)
{
    auto app = Facade::getInstance<AppFacade>("app");
    ASSERT_NE(app, nullptr);
    EXPECT_TRUE(app->hasCommand(kNote));
    EXPECT_EQ(Facade::getInstance("app").get(), app.get());
    EXPECT_EQ(Facade::getInstance<AppFacade>("plain-first"), Facade::getInstance<AppFacade>("plain-first"));
    Facade::getInstance("plain");
    EXPECT_EQ(Facade::getInstance<AppFacade>("plain"), nullptr); // that key's core is another kind
}

TEST(FacadeTest, ObserversAreNotifiedInRegistrationOrderNotNameOrder)
{
    journal.clear();
    auto core = Facade::getInstance("order");
    // Names descend while registration goes on: only registration order can give a, b, c, d.
    core->registerMediator(new Recorder(40, "a"));
    core->registerMediator(new Recorder(30, "b", {kOther, kNote}));
    View::getInstance("order")->registerObserver(
        kNote, new Observer([](const Notification::Ptr&) { journal.push_back("c got 10"); }, nullptr));
    core->registerMediator(new Recorder(10, "d", {kNote, kNote + 1}));
    journal.clear();

    core->sendNotification(kNote, new Text("body"), "type");
    EXPECT_EQ(journal, (Log{"a got 10", "b got 10", "c got 10", "d got 10"}));
    journal.clear();
    core->sendNotification(kOther);
    EXPECT_EQ(journal, (Log{"b got 11", "d got 11"})); // each receives exactly its interests
}

TEST(FacadeTest, RegisteringAndRemovingDuringANotification)
{
    journal.clear();
    auto core = Facade::getInstance("churn");
    auto* first = new Recorder(1, "first");
    core->registerMediator(first);
    core->registerMediator(new Recorder(2, "second"));
    auto* self = new Recorder(3, "self");
    core->registerMediator(self);
    first->onNote = [&core](const Notification&)
    {
        if (!core->hasMediator(4))
            core->registerMediator(new Recorder(4, "late"));
        core->removeMediator(2); // before its turn: not notified any more
    };
    self->onNote = [&core, self](const Notification&)
    {
        core->removeMediator(3);
        // Still alive here: the delivery holds it until it returns.
        journal.push_back(self->getMultitonKey().toStdString() + " still here");
    };
    journal.clear();

    core->sendNotification(kNote);
    // The removed ones are let go when the delivery that holds them ends.
    EXPECT_EQ(journal, (Log{"first got 10", "late registered in churn", "second removed", "self got 10", "self removed",
                            "churn still here", "second deleted", "self deleted"}));
    journal.clear();
    core->sendNotification(kNote);
    EXPECT_EQ(journal, (Log{"first got 10", "late got 10"}));
}

namespace
{
int commandsMade = 0;

class Step : public SimpleCommand
{
public:
    explicit Step(std::string label) : m_label(std::move(label)) { ++commandsMade; }
    void execute(const Notification::Ptr& note) override
    {
        journal.push_back(m_label + " " + juce::String(++m_runs).toStdString() + " in " + getMultitonKey().toStdString()
                          + " " + note->getBodyAs<Text>()->text);
        if (m_label == "a")
            sendNotification(kOther); // a command reaches its core through its key
    }

private:
    std::string m_label;
    int m_runs = 0;
};

class Steps : public MacroCommand
{
protected:
    void initializeMacroCommand() override
    {
        addSubCommand([] { return std::make_unique<Step>("a"); });
        addSubCommand([] { return std::make_unique<Step>("b"); });
        addSubCommand([] { return std::make_unique<Step>("c"); });
    }
};
} // namespace

TEST(FacadeTest, CommandsAreMadeFreshForEachNotificationAndMacrosRunInOrder)
{
    journal.clear();
    auto core = Facade::getInstance("commands");
    core->registerCommand<Steps>(kNote);
    core->registerMediator(new Recorder(1, "after", {kNote, kOther}));
    journal.clear();

    core->sendNotification(kNote, new Text("x"));
    core->sendNotification(kNote, new Text("y"));
    // Each run of a step is its first: nothing survives from one notification to the next.
    EXPECT_EQ(journal,
              (Log{"a 1 in commands x", "after got 11", "b 1 in commands x", "c 1 in commands x", "after got 10",
                   "a 1 in commands y", "after got 11", "b 1 in commands y", "c 1 in commands y", "after got 10"}));
    EXPECT_EQ(commandsMade, 6);

    core->registerCommand(kNote, [] { return std::make_unique<Step>("z"); }); // replaces, one observer still
    journal.clear();
    core->sendNotification(kNote, new Text("w"));
    EXPECT_EQ(journal, (Log{"z 1 in commands w", "after got 10"}));

    core->removeCommand(kNote);
    EXPECT_FALSE(core->hasCommand(kNote));
    journal.clear();
    core->sendNotification(kNote, new Text("v"));
    EXPECT_EQ(journal, (Log{"after got 10"}));
}
