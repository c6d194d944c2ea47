#pragma once

#include "server/CimService.h"
#include "wire/CimRequest.h"

/// Lets the demo server answer a request. The answer must be one that the project's own client can read: good CIM-XML,
/// and an error where the server reports one.
void CheckAnswer(const demo::CimService& service, const demo::CimRequest& request);
