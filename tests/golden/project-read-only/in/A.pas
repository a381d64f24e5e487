unit A;
var Q: TQuery;
end.
