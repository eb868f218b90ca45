// Runs the README's messaging snippet in a process that also listens to its own broadcast, so
// that a test sees what each message carried. Exit status 0 when the broadcast arrived.
#include <LmCom.h>

#include <cstdio>

namespace
{
class PrintingConsumer : public IMsgProc
{
public:
    void procOwnerMsg(const RemoteMessage::Ptr& message) override { std::printf("got %d\n", message->code); }
    void procUnknownMsg(int, int, int) override {}
};

class News : public BroadcastReceiver
{
public:
    News() { addAction("news"); }
    void onReceive(const juce::String& action, const Bundle::Ptr& bundle) override
    {
        const juce::String text = bundle == nullptr   ? "no bundle"
                                  : bundle->isEmpty() ? "an empty bundle"
                                                      : "InforText '" + bundle->getString("InforText", {}) + "'";
        std::printf("%s: %s\n", action.toRawUTF8(), text.toRawUTF8());
        received = true;
    }
    bool received = false;
};
} // namespace

int main()
{
    juce::ScopedJuceInitialiser_GUI juce;
    PrintingConsumer consumer;
    News news;
    IPCMsg::MessageHelper::registerReceiver(news);
    {
#include "messaging.snippet"
        for (int i = 0; i < 500 && !news.received; ++i)
            juce::MessageManager::getInstance()->runDispatchLoopUntil(10);
    }
    MsgSession::purgeAll();
    std::fflush(stdout);
    return news.received ? 0 : 1;
}
