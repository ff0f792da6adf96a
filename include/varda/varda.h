// SPDX-License-Identifier: MIT
#pragma once

/** All of the library. */
#include <varda/batteryinforecord.h>
#include <varda/blecommand.h>
#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/bledevice.h>
#include <varda/bledeviceinfo.h>
#include <varda/bledevicestate.h>
#include <varda/blemode.h>
#include <varda/blescanner.h>
#include <varda/bufferreader.h>
#include <varda/computermodel.h>
#include <varda/connectcontrollerstatus.h>
#include <varda/createcontrollerstatus.h>
#include <varda/currentmode.h>
#include <varda/deletedivesresult.h>
#include <varda/dive.h>
#include <varda/divegas.h>
#include <varda/diveheaderblock.h>
#include <varda/diveline.h>
#include <varda/divemark.h>
#include <varda/divesample.h>
#include <varda/exchangeerror.h>
#include <varda/firmwareimage.h>
#include <varda/gasusage.h>
#include <varda/layoutentry.h>
#include <varda/marlosettings.h>
#include <varda/previousdive.h>
#include <varda/syslogbinrecord.h>
#include <varda/tidemarcommand.h>
#include <varda/tidemardiveconverter.h>
#include <varda/tidemardiveheader.h>
#include <varda/vardableprotocol.h>
#include <varda/vardadata.h>
#include <varda/vardasession.h>
