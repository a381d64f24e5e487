object DM: TDM
    object Q: TKVAQuery
    Left = 1
    Top = 2
    CachedUpdates = True
    AutoCommit = True
    object F: TStringField
      Size = 10
    end
    object Inner: TQuery
      DatabaseName = 'stays'
      object Deep: TTable
      end
    end
    inline G: TFrame
      inherited H: TTable
        Left = 3
      end
    end
  end
  object R: TKVAQuery
    AutoCommit = True
    object F: TStringField
      Size = 10
    end
  end
end
