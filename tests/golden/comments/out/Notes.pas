unit Notes;
{ don't TQuery
 TKVAQuery }
/// TQuery stays
// TKVAQuery changes
(*$R TKVAQuery.dfm*)
(* TKVAQuery *)
{{ TQuery }
{ (*TQuery*) TKVATable }
{ see http://TQuery.example
  TKVATable }
{$IFDEF TKVAQuery}
{$R TQuery.dfm}
{ 'TQuery' TKVAConnection dbtables }
{TKVAQuery}
{ TQueryHelper, xTQuery, TQuery2, TQuery_, 2TKVAQuery, T Query }
interface
const Quote = ''''; { TKVATable }
const S = 'It''s TQuery'; // 'TQuery' TKVATable
const Bad = 'TQuery
implementation
end. TKVAQuery
{ never closed TKVAQuery
