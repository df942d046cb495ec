// Every tag class, for the factory and the XML dispatch.
#pragma once

#include "SwfTag.h"
#include "SwfTagDefineEditText.h"
#include "SwfTagDefineFont.h"
#include "SwfTagDefineFontInfo.h"
#include "SwfTagDefineMorphShape.h"
#include "SwfTagDefineShape.h"
#include "SwfTagDefineSprite.h"
#include "SwfTagPlaceObject.h"
#include "SwfTagRemoveObject.h"
#include "SwfTagDoAction.h"
#include "SwfTagDefineText.h"
#include "SwfTagsAssets.h"
#include "SwfTagsControl.h"
