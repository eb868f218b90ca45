#include "support/TestSupport.h"

#include <LmCom.h>

#include <map>

TEST(NavicoHelperTest, SourceMappingsAndTheirDeliberateAsymmetry)
{
    const std::map<int, int> toService = {{1, 53}, {2, 52}, {3, 54},  {5, 15},  {6, 6},
                                          {7, 4},  {9, 10}, {11, 14}, {12, 18}, {13, 12}};
    const std::map<int, int> toNavico = {{4, 7},  {6, 6},   {10, 9}, {12, 13}, {14, 11}, {15, 5},
                                         {16, 5}, {18, 12}, {52, 2}, {53, 1},  {54, 3}};
    for (int source = -1; source <= 60; ++source)
    {
        const auto found = toService.find(source);
        EXPECT_EQ(NavicoHelper::getSrcFromNavicoType(source), found == toService.end() ? 34 : found->second) << source;
    }
    for (int service = -1; service <= 60; ++service)
    {
        const auto found = toNavico.find(service);
        EXPECT_EQ(NavicoHelper::getScrFromWinceType((Pubhead::eAppServiceType::EnumTypeTag)service),
                  found == toNavico.end() ? 24 : found->second)
            << service;
    }

    // Not inverses: both auxiliary inputs go to source 5, which comes back as 15.
    EXPECT_EQ(
        NavicoHelper::getSrcFromNavicoType(NavicoHelper::getScrFromWinceType(Pubhead::eAppServiceType::SrvAuxIn2)),
        Pubhead::eAppServiceType::SrvAuxIn);
}
