#pragma once

#include <libpq-fe.h>

#include "data/providers/LateLibrary.h"

namespace tessel::pq {

inline constexpr LateLibrary library("libpq.so.5", "PostgreSQL", "libpq5");

/// A function of libpq, which is loaded with the first that is called.
template <class Signature>
class Function : public LateFunction<Signature> {
 public:
  constexpr explicit Function(const char* name) : LateFunction<Signature>(library, name) {}
};

inline constinit const Function<decltype(::PQbackendPID)> BackendPID("PQbackendPID");
inline constinit const Function<decltype(::PQcancel)> Cancel("PQcancel");
inline constinit const Function<decltype(::PQclear)> Clear("PQclear");
inline constinit const Function<decltype(::PQcmdStatus)> CmdStatus("PQcmdStatus");
inline constinit const Function<decltype(::PQcmdTuples)> CmdTuples("PQcmdTuples");
inline constinit const Function<decltype(::PQconndefaults)> Conndefaults("PQconndefaults");
inline constinit const Function<decltype(::PQconnectPoll)> ConnectPoll("PQconnectPoll");
inline constinit const Function<decltype(::PQconnectStartParams)>
    ConnectStartParams("PQconnectStartParams");
inline constinit const Function<decltype(::PQconninfoFree)> ConninfoFree("PQconninfoFree");
inline constinit const Function<decltype(::PQconsumeInput)> ConsumeInput("PQconsumeInput");
inline constinit const Function<decltype(::PQdb)> Db("PQdb");
inline constinit const Function<decltype(::PQerrorMessage)> ErrorMessage("PQerrorMessage");
inline constinit const Function<decltype(::PQfinish)> Finish("PQfinish");
inline constinit const Function<decltype(::PQflush)> Flush("PQflush");
inline constinit const Function<decltype(::PQfmod)> Fmod("PQfmod");
inline constinit const Function<decltype(::PQfname)> Fname("PQfname");
inline constinit const Function<decltype(::PQfreeCancel)> FreeCancel("PQfreeCancel");
inline constinit const Function<decltype(::PQfreemem)> Freemem("PQfreemem");
inline constinit const Function<decltype(::PQftable)> Ftable("PQftable");
inline constinit const Function<decltype(::PQftablecol)> Ftablecol("PQftablecol");
inline constinit const Function<decltype(::PQftype)> Ftype("PQftype");
inline constinit const Function<decltype(::PQgetCancel)> GetCancel("PQgetCancel");
inline constinit const Function<decltype(::PQgetCopyData)> GetCopyData("PQgetCopyData");
inline constinit const Function<decltype(::PQgetResult)> GetResult("PQgetResult");
inline constinit const Function<decltype(::PQgetisnull)> Getisnull("PQgetisnull");
inline constinit const Function<decltype(::PQgetlength)> Getlength("PQgetlength");
inline constinit const Function<decltype(::PQgetvalue)> Getvalue("PQgetvalue");
inline constinit const Function<decltype(::PQhost)> Host("PQhost");
inline constinit const Function<decltype(::PQisBusy)> IsBusy("PQisBusy");
inline constinit const Function<decltype(::PQlibVersion)> LibVersion("PQlibVersion");
inline constinit const Function<decltype(::PQnfields)> Nfields("PQnfields");
inline constinit const Function<decltype(::PQnotifies)> Notifies("PQnotifies");
inline constinit const Function<decltype(::PQparameterStatus)> ParameterStatus("PQparameterStatus");
inline constinit const Function<decltype(::PQport)> Port("PQport");
inline constinit const Function<decltype(::PQputCopyData)> PutCopyData("PQputCopyData");
inline constinit const Function<decltype(::PQputCopyEnd)> PutCopyEnd("PQputCopyEnd");
inline constinit const Function<decltype(::PQresultErrorField)>
    ResultErrorField("PQresultErrorField");
inline constinit const Function<decltype(::PQresultErrorMessage)>
    ResultErrorMessage("PQresultErrorMessage");
inline constinit const Function<decltype(::PQresultStatus)> ResultStatus("PQresultStatus");
inline constinit const Function<decltype(::PQsendQuery)> SendQuery("PQsendQuery");
inline constinit const Function<decltype(::PQsendQueryParams)> SendQueryParams("PQsendQueryParams");
inline constinit const Function<decltype(::PQserverVersion)> ServerVersion("PQserverVersion");
inline constinit const Function<decltype(::PQsetNoticeReceiver)>
    SetNoticeReceiver("PQsetNoticeReceiver");
inline constinit const Function<decltype(::PQsetSingleRowMode)>
    SetSingleRowMode("PQsetSingleRowMode");
inline constinit const Function<decltype(::PQsetnonblocking)> Setnonblocking("PQsetnonblocking");
inline constinit const Function<decltype(::PQsocket)> Socket("PQsocket");
inline constinit const Function<decltype(::PQsslInUse)> SslInUse("PQsslInUse");
inline constinit const Function<decltype(::PQstatus)> Status("PQstatus");
inline constinit const Function<decltype(::PQtransactionStatus)>
    TransactionStatus("PQtransactionStatus");
inline constinit const Function<decltype(::PQunescapeBytea)> UnescapeBytea("PQunescapeBytea");
inline constinit const Function<decltype(::PQuser)> User("PQuser");

}  // namespace tessel::pq
