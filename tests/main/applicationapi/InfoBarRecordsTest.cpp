// The info-bar records: defaults, the keys each writes, and round trips through Bundles and
// the wire format.
#include "support/TestSupport.h"

#include <LmCom.h>

#include <set>

namespace
{
std::set<std::string> keysOf(const Bundle::Ptr& bundle)
{
    std::set<std::string> keys;
    for (Parcel::ValueMap::Iterator it(bundle->getValueMap()); it.next();)
        keys.insert(it.getKey().toStdString());
    return keys;
}

/** Every value of a Bundle as text, by key: two records are equal when their Bundles are. */
std::map<std::string, std::string> valuesOf(const Bundle::Ptr& bundle)
{
    std::map<std::string, std::string> values;
    for (Parcel::ValueMap::Iterator it(bundle->getValueMap()); it.next();)
        values[it.getKey().toStdString()] = it.getValue()->toString().toStdString();
    return values;
}

/** The Bundle as another process rebuilds it: flattened into a Parcel and read back. */
Bundle::Ptr throughTheWire(const Bundle::Ptr& bundle)
{
    auto parcel = bundle->writeToParcel();
    auto copy = Parcel::obtain();
    copy->fillData(parcel->data(), parcel->dataSize());
    return Bundle::Ptr(dynamic_cast<Bundle*>(createFromParcel(copy.get()).get()));
}

const juce::String kText = juce::String::fromUTF8("\xe5\x8c\x97\xe4\xba\xac 98.3 \xe2\x99\xab \"%s\"");
} // namespace

TEST(InfoBarRecordsTest, DefaultsAndTheKeysEachRecordWrites)
{
    using Keys = std::set<std::string>;
    EXPECT_EQ(keysOf(InfoTuner::obtain()->enBundle()), (Keys{"SourceID", "Action"}));
    // Channel, artist and title are written even empty.
    EXPECT_EQ(keysOf(InfoSatRadio::obtain()->enBundle()), (Keys{"SourceID", "ChannelName", "Artist", "Title"}));
    EXPECT_EQ(keysOf(InfoBT::obtain()->enBundle()), (Keys{"SourceID", "Action"}));
    EXPECT_EQ(keysOf(InfoMedia::obtain()->enBundle()),
              (Keys{"SourceID", "RefreshFlag", "PlayState", "TotalNum", "CurNum", "DiscType", "FileType"}));
    EXPECT_EQ(keysOf(InfoSource::obtain()->enBundle()), Keys{"SourceID"});
    auto source = InfoSource::obtain();
    source->inforText2 = "two";
    EXPECT_EQ(keysOf(source->enBundle()), (Keys{"SourceID", "InforText2"}));

    // A null Bundle and an empty one give the same defaults.
    for (const Bundle::Ptr& bundle : {Bundle::Ptr(), Bundle::obtain()})
    {
        EXPECT_EQ(valuesOf(InfoTuner::deBundle(bundle)->enBundle()),
                  (std::map<std::string, std::string>{{"SourceID", "24"}, {"Action", "255"}}));
        EXPECT_EQ(InfoSatRadio::deBundle(bundle)->sourceID, 24);
        EXPECT_EQ(valuesOf(InfoBT::deBundle(bundle)->enBundle()),
                  (std::map<std::string, std::string>{{"SourceID", "24"}, {"Action", "255"}}));
        EXPECT_EQ(valuesOf(InfoMedia::deBundle(bundle)->enBundle()),
                  (std::map<std::string, std::string>{{"SourceID", "24"},
                                                      {"RefreshFlag", "0"},
                                                      {"PlayState", "255"},
                                                      {"TotalNum", "0"},
                                                      {"CurNum", "0"},
                                                      {"DiscType", "0"},
                                                      {"FileType", "0"}}));
        EXPECT_EQ(valuesOf(InfoSource::deBundle(bundle)->enBundle()),
                  (std::map<std::string, std::string>{{"SourceID", "24"}}));
    }

    // Values of the wrong type are converted, never taken as they are.
    auto odd = Bundle::obtain();
    odd->putString("SourceID", "not a number");
    odd->putInt("InforText", 42);
    odd->putBool("Action", true);
    auto tuner = InfoTuner::deBundle(odd);
    EXPECT_EQ(std::make_tuple(tuner->sourceID, tuner->inforText, tuner->action),
              std::make_tuple(0, juce::String("42"), 1));
}

TEST(InfoBarRecordsTest, EveryFieldSurvivesABundleAndTheWire)
{
    auto tuner = InfoTuner::obtain();
    tuner->sourceID = 0;
    tuner->inforText = kText;
    tuner->bandText = "FM1";
    tuner->action = -1;
    auto tunerBack = InfoTuner::deBundle(throughTheWire(tuner->enBundle()));
    EXPECT_EQ(std::make_tuple(tunerBack->sourceID, tunerBack->inforText, tunerBack->bandText, tunerBack->action),
              std::make_tuple(0, kText, juce::String("FM1"), -1));

    // The others compared through their Bundles: a field lost on the way changes a value.
    auto sat = InfoSatRadio::obtain();
    sat->sourceID = 18;
    sat->channelName = "Hits 1";
    sat->artist = kText;
    sat->bandText = "SXM";
    sat->category = "Pop";
    EXPECT_EQ(valuesOf(InfoSatRadio::deBundle(throughTheWire(sat->enBundle()))->enBundle()), valuesOf(sat->enBundle()));
    EXPECT_EQ(keysOf(sat->enBundle()).size(), 6u);

    auto bt = InfoBT::obtain();
    bt->sourceID = 13;
    bt->inforText = "+49 30 1234";
    bt->action = 2;
    EXPECT_EQ(valuesOf(InfoBT::deBundle(throughTheWire(bt->enBundle()))->enBundle()), valuesOf(bt->enBundle()));

    auto media = InfoMedia::obtain();
    media->refreshFlag = 1;
    media->playState = 2;
    media->totalNum = 1000000;
    media->curNum = 999999;
    media->discType = 3;
    media->fileType = 4;
    media->title = kText;
    media->artist = "Artist";
    media->album = "Album";
    media->inforText = "01:23";
    EXPECT_EQ(valuesOf(InfoMedia::deBundle(throughTheWire(media->enBundle()))->enBundle()),
              valuesOf(media->enBundle()));
    EXPECT_EQ(keysOf(media->enBundle()).size(), 11u);

    auto source = InfoSource::obtain();
    source->sourceID = 15;
    source->inforText1 = "AUX";
    source->inforText3 = kText;
    EXPECT_EQ(valuesOf(InfoSource::deBundle(throughTheWire(source->enBundle()))->enBundle()),
              valuesOf(source->enBundle()));
}
